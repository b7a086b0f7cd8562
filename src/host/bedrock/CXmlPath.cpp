#include "host/bedrock/CXmlPath.h"

#include <algorithm>

CXmlUtf8::CXmlUtf8(QStringView sText)
{
    vm_arBytes.resize(sText.size() + 1);
    char* pOut = vm_arBytes.data();
    char16_t nBits = 0;
    for (const QChar cChar : sText) {
        nBits |= cChar.unicode();
        *pOut++ = static_cast<char>(cChar.unicode());
    }
    *pOut = 0;
    if (nBits >= 0x80) {
        const QByteArray sBytes = sText.toUtf8();
        vm_arBytes.resize(0);
        vm_arBytes.append(sBytes.constData(), sBytes.size() + 1);
    }
}

CXmlPath::CXmlPath(const QString& sPath) : vm_objText(QStringView(sPath).trimmed())
{
    std::string_view sRest = vm_objText.m_F_s_View();
    if (sRest.empty())
        return;
    vm_bAbsolute = sRest.front() == '/';
    if (vm_bAbsolute)
        sRest.remove_prefix(1);
    for (std::size_t nSlash = 0; nSlash != std::string_view::npos;) {
        nSlash = sRest.find('/');
        const std::string_view sName = sRest.substr(0, nSlash);
        vm_bValid = vm_bValid && !sName.empty();
        vm_arNames.append(sName);
        sRest.remove_prefix(std::min(sName.size() + 1, sRest.size()));
    }
}
