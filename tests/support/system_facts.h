#pragma once

#include <string>

/// The operating system, asked without the library.
namespace zorvel {
namespace test {

unsigned long codeOfMissingFile();
unsigned long codeOfDeniedAccess();

/// The text for a code, as the system gives it.
std::string systemTextOf(unsigned long code);

/// Whether those texts end with a carriage return and a line feed.
bool systemTextsEndWithALine();

/// Leaves codeOfMissingFile() as the calling thread's last error.
void failToOpenAFile();

/// Leaves 0 as the calling thread's last error.
void clearLastError();

/// Leaves a code as the calling thread's last error.
void setLastError(unsigned long code);

/// Whether what removes a link removes the link itself, and not its target. Wine
/// resolves links.
bool linksAreRemovable();

/// Whether a file that is read-only cannot be removed.
bool readOnlyFilesStay();

/// Whether a search without a match begins, and only its end tells.
bool searchesForNothingBegin();

/// A library that every process has loaded, as a part of its path, and a symbol
/// that it exports.
const char* systemLibrary();
const char* systemSymbol();

/// Sets a variable of this process's environment.
void setEnvironment(const std::string& name, const std::string& value);

}  // namespace test
}  // namespace zorvel
