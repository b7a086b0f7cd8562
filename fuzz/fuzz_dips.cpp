#include <cstddef>
#include <cstdint>

#include "Expect.h"
#include "core/CDipsReply.h"

/// The reply of the directory service.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    const QByteArray sReply(reinterpret_cast<const char*>(pData), static_cast<qsizetype>(nSize));
    QByteArray sAddress("before");
    int nPort = -5;
    if (CDipsReply::s_F_b_Parse(sReply, sAddress, nPort))
        Expect(sReply.contains(sAddress), "the address stands in the reply");
    else
        Expect(sAddress == "before" && nPort == -5, "a refused reply leaves both as they were");
    return 0;
}
