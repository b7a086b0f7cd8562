#include "host/bedrock/CFileRW.h"

#include <algorithm>
#include <array>

#include "host/bedrock/CSFunc.h"

CFileRW::CFileRW(const QByteArray& sPath, emDef_OpenType nType)
{
    if (!sPath.isEmpty())
        m_F_n_Open(CSFunc::s_F_s_AnsiToUnicode(sPath), nType);
}

CFileRW::~CFileRW()
{
    close();
}

int CFileRW::m_F_n_Open(const QString& sPath, emDef_OpenType nType)
{
    static const std::array<OpenMode, 3> arModes = {ReadOnly, WriteOnly | Truncate, ReadWrite};
    close();
    if (nType < OpenType_Read || nType > OpenType_ReadWrite)
        return 0;
    setFileName(sPath);
    return open(arModes[static_cast<std::size_t>(nType)]) ? 1 : 0;
}

quint32 CFileRW::m_F_n_Read(void* pBuffer, quint32 nCount)
{
    if (!pBuffer || !isReadable())
        return 0;
    return static_cast<quint32>(std::max<qint64>(read(static_cast<char*>(pBuffer), nCount), 0));
}
