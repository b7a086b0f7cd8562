#include <QTemporaryFile>
#include <cstddef>
#include <cstdint>

#include "Expect.h"
#include "host/Lib_Hostenv.h"

using namespace Qt::StringLiterals;

/// A language file, as it lies on the disk.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    static QTemporaryFile s_objFile;
    if (!s_objFile.isOpen() && !s_objFile.open())
        return -1;
    s_objFile.resize(0);
    s_objFile.seek(0);
    s_objFile.write(reinterpret_cast<const char*>(pData), static_cast<qint64>(nSize));
    s_objFile.flush();

    CLangXMLObj objLang;
    const bool bLoaded = objLang.m_F_b_LoadXMLFile(s_objFile.fileName());
    Expect(bLoaded == objLang.m_F_b_IsOpen(), "a file is open once it was loaded");
    QString sText;
    const int nFound = objLang.m_F_n_GetLangStr(u"Error"_s, sText, u"default"_s);
    Expect(nFound == 1 || sText == u"default"_s, "a key that isn't there has its default");
    Expect(bLoaded || nFound == 0, "a closed file has no text");
    return 0;
}
