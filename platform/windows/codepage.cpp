#include "platform/codepage.h"

#include <windows.h>

namespace zorvel {
namespace platform {

bool isLeadByte(unsigned char byte)
{
    return IsDBCSLeadByte(byte) != FALSE;
}

}  // namespace platform
}  // namespace zorvel
