#include "suite/qx.h"

#include <new>
#include <string>
#include <unordered_set>

/// The elements of an unordered_set stay where they are for its whole life, so
/// their texts can be handed out.
struct _namehash_context
{
    std::unordered_set<std::string> names;
};

_namehash_context* qx_namehash_create()
{
    return new (std::nothrow) _namehash_context;
}

void qx_namehash_destroy(_namehash_context* context)
{
    delete context;
}

const char* qx_namehash_add(_namehash_context* context, const char* name)
{
    if (context == nullptr || name == nullptr)
        return nullptr;
    try {
        return context->names.emplace(name).first->c_str();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
