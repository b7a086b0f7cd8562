#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Expect.h"
#include "host/bedrock/CMultipartReader.h"

/// A multipart stream: the first line is its content type, the byte behind it the size of the bites it comes in.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    const std::string_view sAll(reinterpret_cast<const char*>(pData), nSize);
    const std::size_t nLine = std::min(sAll.find('\n'), sAll.size());
    std::string_view sRest = sAll.substr(std::min(nLine + 1, sAll.size()));
    if (sRest.empty())
        return 0;
    const std::size_t nBite = 1u + static_cast<unsigned char>(sRest[0]);
    sRest.remove_prefix(1);

    CMultipartReader objReader;
    objReader.m_S_Begin(sAll.substr(0, nLine));
    std::string sPart;
    std::size_t nOut = 0;
    const std::size_t nIn = sRest.size();
    for (; !sRest.empty(); sRest.remove_prefix(std::min(nBite, sRest.size()))) {
        objReader.m_S_Feed(sRest.data(), std::min(nBite, sRest.size()));
        if (sRest.size() % 3 == 0 && objReader.m_F_b_Pop(sPart))
            nOut += sPart.size();
    }
    objReader.m_S_End();
    while (objReader.m_F_b_Pop(sPart)) {
        Expect(!sPart.empty() && sPart.size() <= CMultipartReader::MaxPart, "a part has a size within its bounds");
        nOut += sPart.size();
    }
    Expect(nOut <= nIn, "no more comes out than went in");
    Expect(objReader.m_F_b_Empty(), "all parts were taken");
    return 0;
}
