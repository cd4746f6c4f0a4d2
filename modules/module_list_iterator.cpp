#include <zorvel/modules.h>

#include "platform/modules.h"

zvLoadedModuleListIterator::zvLoadedModuleListIterator(void* ofProcess, void* const* handles, std::uint32_t number,
                                                       std::uint32_t position)
    : process(ofProcess), modules(handles), count(number), index(position)
{
    name[0] = '\0';
    updateName();
}

/// The position only: an iterator stays on its own list.
zvLoadedModuleListIterator& zvLoadedModuleListIterator::operator=(const zvLoadedModuleListIterator& other)
{
    index = other.index;
    updateName();
    return *this;
}

const char* zvLoadedModuleListIterator::operator*() const
{
    return name;
}

std::uint32_t zvLoadedModuleListIterator::getIndex() const
{
    return index;
}

bool zvLoadedModuleListIterator::operator==(const zvLoadedModuleListIterator& other) const
{
    return index == other.index;
}

bool zvLoadedModuleListIterator::operator!=(const zvLoadedModuleListIterator& other) const
{
    return index != other.index;
}

bool zvLoadedModuleListIterator::operator<(const zvLoadedModuleListIterator& other) const
{
    return index < other.index;
}

bool zvLoadedModuleListIterator::operator<=(const zvLoadedModuleListIterator& other) const
{
    return index <= other.index;
}

bool zvLoadedModuleListIterator::operator>(const zvLoadedModuleListIterator& other) const
{
    return index > other.index;
}

bool zvLoadedModuleListIterator::operator>=(const zvLoadedModuleListIterator& other) const
{
    return index >= other.index;
}

zvLoadedModuleListIterator& zvLoadedModuleListIterator::operator++()
{
    ++index;
    updateName();
    return *this;
}

zvLoadedModuleListIterator& zvLoadedModuleListIterator::operator--()
{
    --index;
    updateName();
    return *this;
}

zvLoadedModuleListIterator zvLoadedModuleListIterator::operator++(int)
{
    const zvLoadedModuleListIterator before(*this);
    ++*this;
    return before;
}

zvLoadedModuleListIterator zvLoadedModuleListIterator::operator--(int)
{
    const zvLoadedModuleListIterator before(*this);
    --*this;
    return before;
}

/// The result of the look-up is ignored: a module of which the system cannot
/// tell the name leaves the text as it is.
void zvLoadedModuleListIterator::updateName()
{
    if (index < count && modules)
        zorvel::platform::moduleFileName(process, modules[index], name, sizeof name);
    else
        name[0] = '\0';
}
