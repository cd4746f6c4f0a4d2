#pragma once

#include <sstream>
#include <string>

namespace zorvel {
namespace demo {

/// Collects the elements of a picture. Positions are pixels, written with one
/// decimal; how things look is left to classes of the style sheet.
class Svg
{
public:
    Svg(double width, double height, const std::string& style, const std::string& definitions);

    void rectangle(const std::string& style, double x, double y, double width, double height,
                   const std::string& tip = std::string());
    void line(const std::string& style, double x1, double y1, double x2, double y2);
    /// A path of straight lines, as SVG writes it.
    void path(const std::string& style, const std::string& data);
    /// The anchor is "start", "middle" or "end".
    void text(const std::string& style, double x, double y, const std::string& content,
              const std::string& anchor = "start");

    /// The whole document.
    std::string document() const { return m_out.str() + "</svg>\n"; }

private:
    std::ostringstream m_out;
};

}  // namespace demo
}  // namespace zorvel
