#include <zorvel/fsutil.h>

// The callback classes cross the library's edge: everything that the compiler would otherwise make in each module
// of the application is made here, once.

zvStringProcedure::zvStringProcedure() = default;
zvStringProcedure::zvStringProcedure(const zvStringProcedure&) = default;
zvStringProcedure& zvStringProcedure::operator=(const zvStringProcedure&) = default;
zvStringProcedure::~zvStringProcedure() = default;

zvStringPrefixProcedure::zvStringPrefixProcedure() = default;
zvStringPrefixProcedure::zvStringPrefixProcedure(const zvStringPrefixProcedure&) = default;
zvStringPrefixProcedure& zvStringPrefixProcedure::operator=(const zvStringPrefixProcedure&) = default;
zvStringPrefixProcedure::~zvStringPrefixProcedure() = default;

zvStringPredicate::zvStringPredicate() = default;
zvStringPredicate::zvStringPredicate(const zvStringPredicate&) = default;
zvStringPredicate& zvStringPredicate::operator=(const zvStringPredicate&) = default;
zvStringPredicate::~zvStringPredicate() = default;

zvStringPrefixPredicate::zvStringPrefixPredicate() = default;
zvStringPrefixPredicate::zvStringPrefixPredicate(const zvStringPrefixPredicate&) = default;
zvStringPrefixPredicate& zvStringPrefixPredicate::operator=(const zvStringPrefixPredicate&) = default;
zvStringPrefixPredicate::~zvStringPrefixPredicate() = default;

zvIgnoreString::zvIgnoreString() = default;
zvIgnoreString::zvIgnoreString(const zvIgnoreString&) = default;
zvIgnoreString& zvIgnoreString::operator=(const zvIgnoreString&) = default;
zvIgnoreString::~zvIgnoreString() = default;

void zvIgnoreString::operator()(const char*) const {}

zvDirectorySizeAdder::zvDirectorySizeAdder(zvUInt64* total) : m_total(total) {}
zvDirectorySizeAdder::zvDirectorySizeAdder(const zvDirectorySizeAdder&) = default;
zvDirectorySizeAdder& zvDirectorySizeAdder::operator=(const zvDirectorySizeAdder&) = default;
zvDirectorySizeAdder::~zvDirectorySizeAdder() = default;

void zvDirectorySizeAdder::operator()(const char* path) const
{
    // A size of 2 GiB or more is negative and makes the total smaller.
    if (m_total)
        *m_total += static_cast<zvUInt64>(zvGetFileSize(path));
}

zvHashNameToVector::zvHashNameToVector(std::vector<const char*>& names, _namehash_context* context)
    : m_names(names), m_context(context)
{
}
zvHashNameToVector::zvHashNameToVector(const zvHashNameToVector&) = default;
zvHashNameToVector::~zvHashNameToVector() = default;

void zvHashNameToVector::operator()(const char* path) const
{
    m_names.push_back(qx_namehash_add(m_context, path));
}
