#include <zorvel/lockfile.h>

zvLogger::zvLogger(bool on, std::ostream& target) : enabled(on), stream(&target) {}

zvLogger& zvLogger::operator<<(std::ostream& (*manipulator)(std::ostream&))
{
    if (enabled)
        manipulator(*stream);
    return *this;
}
