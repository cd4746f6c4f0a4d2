#include "examples/deploy_demo/svg.h"

#include <iomanip>
#include <locale>

namespace zorvel {
namespace demo {

namespace {

std::string escaped(const std::string& text)
{
    std::string result;
    for (const char c : text)
        result += c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : c == '"' ? "&quot;" : std::string(1, c);
    return result;
}

}  // namespace

Svg::Svg(double width, double height, const std::string& style, const std::string& definitions)
{
    m_out.imbue(std::locale::classic());
    m_out << std::fixed << std::setprecision(1);
    m_out << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << width << "\" height=\"" << height
          << "\" viewBox=\"0 0 " << width << ' ' << height << "\">\n<style>\n"
          << style << "</style>\n<defs>\n"
          << definitions << "</defs>\n";
}

void Svg::rectangle(const std::string& style, double x, double y, double width, double height, const std::string& tip)
{
    m_out << "<rect class=\"" << style << "\" x=\"" << x << "\" y=\"" << y << "\" width=\"" << width << "\" height=\""
          << height << '"';
    if (tip.empty())
        m_out << "/>\n";
    else
        m_out << "><title>" << escaped(tip) << "</title></rect>\n";
}

void Svg::line(const std::string& style, double x1, double y1, double x2, double y2)
{
    m_out << "<line class=\"" << style << "\" x1=\"" << x1 << "\" y1=\"" << y1 << "\" x2=\"" << x2 << "\" y2=\"" << y2
          << "\"/>\n";
}

void Svg::path(const std::string& style, const std::string& data)
{
    m_out << "<path class=\"" << style << "\" d=\"" << data << "\"/>\n";
}

void Svg::text(const std::string& style, double x, double y, const std::string& content, const std::string& anchor)
{
    m_out << "<text class=\"" << style << "\" x=\"" << x << "\" y=\"" << y << "\" text-anchor=\"" << anchor << "\">"
          << escaped(content) << "</text>\n";
}

}  // namespace demo
}  // namespace zorvel
