#include "suite/qx.h"

#include "platform/codepage.h"

bool qxIsMultiByteLead(unsigned char byte)
{
    return zorvel::platform::isLeadByte(byte);
}
