#include "tests/support/encoding.h"

#include <iconv.h>
#include <langinfo.h>

#include <stdexcept>

namespace zorvel {
namespace test {

namespace {

class Converter
{
public:
    explicit Converter(const char* codeset) : m_converter(iconv_open("UTF-8", codeset))
    {
        if (m_converter == reinterpret_cast<iconv_t>(-1))
            throw std::runtime_error(std::string("no conversion from ") + codeset);
    }
    ~Converter() { iconv_close(m_converter); }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    std::string convert(std::string text)
    {
        std::string result(4 * text.size() + 4, '\0');
        char* in = &text[0];
        char* out = &result[0];
        std::size_t inLeft = text.size();
        std::size_t outLeft = result.size();
        if (iconv(m_converter, &in, &inLeft, &out, &outLeft) != 0 || inLeft != 0)
            throw std::runtime_error("no text: " + text);
        result.resize(result.size() - outLeft);
        return result;
    }

private:
    const iconv_t m_converter;
};

}  // namespace

std::string utf8FromCodePage932(const std::string& text)
{
    return Converter("CP932").convert(text);
}

std::string utf8FromProcessCodePage(const std::string& text)
{
    return Converter(nl_langinfo(CODESET)).convert(text);
}

}  // namespace test
}  // namespace zorvel
