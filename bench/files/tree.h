#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zorvel {
namespace bench {

/// What the folders of a tree hold in all: groups of 50 folders (a folder and
/// 49 in it) with 50 files in each folder; one file of ten is named "*.txt".
struct Tree
{
    /// For a number of files that 50 divides; from 2,500 on, that 2,500 divides.
    explicit Tree(std::uint64_t fileCount);

    std::uint64_t files;
    std::uint64_t folders;
    std::uint64_t texts;  ///< files named "*.txt"
    std::uint64_t bytes;  ///< the sizes of all files
};

/// ZORVEL_BENCH_QUICK=1: smaller amounts.
bool isQuick();

/// The folder that all trees are made in: ZORVEL_BENCH_TREE, else
/// build/bench/tree in the current folder. Made when it is missing.
std::string treeRoot();

/// The path of an entry of treeRoot().
std::string inTreeRoot(const std::string& name);

/// Makes a tree at a path where nothing is; the files have no blocks.
void makeTree(const std::string& path, const Tree& tree);

/// A tree that is made once and found again by later runs; its path.
std::string keptTree(const Tree& tree);

/// All folders of a tree.
std::vector<std::string> foldersOf(const std::string& path, const Tree& tree);

/// The system's way to make a file of a size, and a folder: for speed.
void makeFile(const std::string& path, std::uint64_t size);
void makeFolder(const std::string& path);

bool exists(const std::string& path);

/// Removes what is at a path, if anything is, by no contestant's means that
/// matter: it is not measured.
void clear(const std::string& path);

}  // namespace bench
}  // namespace zorvel
