#include <zorvel/zorvel.h>

struct Callable
{
    void operator()(const char*) const {}
};

/// Has nothing but types: describe-classes asks the compiler how it lays them out. Of a template that stands in the
/// interface it needs an instance.
template class zvPathString_<zvMBCSSafeString>;
template class zvWellFormedPathNormalizer<zvPathString>;
template class zvScopedResource<int>;
template class zvStringProcedureAdapter<Callable>;
