#include "examples/deploy_demo/text.h"

#include <iomanip>
#include <sstream>

namespace zorvel {
namespace demo {

bool beginsWith(const std::string& text, const std::string& beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
}

std::string seconds(Microseconds duration, int decimals)
{
    std::ostringstream text;
    text << std::fixed << std::setprecision(decimals) << static_cast<double>(duration) / 1e6 << " s";
    return text.str();
}

std::string enumeration(const std::vector<std::string>& names)
{
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i)
        text += (i == 0 ? "" : i + 1 < names.size() ? ", " : " and ") + names[i];
    return text;
}

}  // namespace demo
}  // namespace zorvel
