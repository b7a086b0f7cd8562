#include "CLayoutStore.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <algorithm>

#include "CRecorderStore.h"
#include "host/Lib_Bedrock.h"

using namespace Qt::StringLiterals;

namespace {

const QString g_sWindow = u"/root/Window"_s;
const QString g_sLayout = u"/root/Layout"_s;

QString SlotPath(int nSlot)
{
    return QString::asprintf("/root/Layout/S%03d", nSlot);
}

bool IsShape(int nShape)
{
    return nShape == 1 || nShape == 4 || nShape == 9 || nShape == 16;
}

stDef_ChannelKey ReadSlot(const CXmlObj& objXml, const QString& sPath)
{
    const stDef_ChannelKey stKey{objXml.m_F_n_GetValueInt(sPath, u"NvrID"_s, -1),
                                 objXml.m_F_n_GetValueInt(sPath, u"Channel"_s, -1)};
    const bool bGood = stKey.nNvrID >= 0 && stKey.nNvrID < CRecorderStore::MaxRecorders && stKey.nChannel >= 0 &&
                       stKey.nChannel < CRecorderStore::MaxChannels;
    return bGood ? stKey : stDef_ChannelKey();
}

} // namespace

CLayoutStore::CLayoutStore(const QString& sConfigFolder)
    : vm_sFile(QDir(sConfigFolder).filePath(u"Host.xml"_s)),
      vm_sDamaged(QDir(sConfigFolder).filePath(u"Host.damaged.xml"_s))
{}

bool CLayoutStore::m_F_b_Load(stDef_Layout& stLayout) const
{
    if (!QFile::exists(vm_sFile))
        return false;
    CXmlObj objXml;
    if (!objXml.m_F_b_LoadXMLFile(vm_sFile) || objXml.m_F_n_GetValueInt(g_sLayout, u"count"_s, -1) < 0) {
        QFile::remove(vm_sDamaged);
        QFile::rename(vm_sFile, vm_sDamaged);
        return false;
    }
    const int nShape = objXml.m_F_n_GetValueInt(g_sLayout, u"Shape"_s, 4);
    const int nSlots = std::min(objXml.m_F_n_GetValueInt(g_sLayout, u"count"_s, 0), MaxSlots);
    QString sGeometry;
    objXml.m_F_n_GetValue(g_sWindow, u"Geometry"_s, sGeometry, {});
    stLayout.nShape = IsShape(nShape) ? nShape : 4;
    stLayout.nPage = std::clamp(objXml.m_F_n_GetValueInt(g_sLayout, u"Page"_s, 0), 0, MaxSlots);
    stLayout.sGeometry = QByteArray::fromBase64(sGeometry.toLatin1());
    stLayout.bFullScreen = objXml.m_F_n_GetValueInt(g_sWindow, u"FullScreen"_s, 0) == 1;
    stLayout.nLanguage = objXml.m_F_n_GetValueInt(g_sWindow, u"Language"_s, 1) == 0 ? 0 : 1;
    stLayout.bPtzPanel = objXml.m_F_n_GetValueInt(g_sWindow, u"PtzPanel"_s, 0) == 1;
    stLayout.nPtzSpeed = std::clamp(objXml.m_F_n_GetValueInt(g_sWindow, u"PtzSpeed"_s, 5), 1, 10);
    stLayout.arSlots.clear();
    for (int nSlot = 0; nSlot < nSlots; ++nSlot)
        stLayout.arSlots.push_back(ReadSlot(objXml, SlotPath(nSlot)));
    return true;
}

bool CLayoutStore::m_F_b_Save(const stDef_Layout& stLayout) const
{
    CXmlObj objXml;
    objXml.m_F_b_LoadXML(u"<root/>"_s);
    objXml.m_F_b_SetValue(g_sWindow, u"Geometry"_s, QString::fromLatin1(stLayout.sGeometry.toBase64()));
    objXml.m_F_b_SetValue(g_sWindow, u"FullScreen"_s, stLayout.bFullScreen ? 1 : 0);
    objXml.m_F_b_SetValue(g_sWindow, u"Language"_s, stLayout.nLanguage);
    objXml.m_F_b_SetValue(g_sWindow, u"PtzPanel"_s, stLayout.bPtzPanel ? 1 : 0);
    objXml.m_F_b_SetValue(g_sWindow, u"PtzSpeed"_s, stLayout.nPtzSpeed);
    objXml.m_F_b_SetValue(g_sLayout, u"Shape"_s, stLayout.nShape);
    objXml.m_F_b_SetValue(g_sLayout, u"Page"_s, stLayout.nPage);
    const int nSlots = std::min(static_cast<int>(stLayout.arSlots.size()), MaxSlots);
    objXml.m_F_b_SetValue(g_sLayout, u"count"_s, nSlots);
    for (int nSlot = 0; nSlot < nSlots; ++nSlot) {
        const stDef_ChannelKey& stKey = stLayout.arSlots[static_cast<std::size_t>(nSlot)];
        if (stKey.nNvrID < 0)
            continue;
        objXml.m_F_b_SetValue(SlotPath(nSlot), u"NvrID"_s, stKey.nNvrID);
        objXml.m_F_b_SetValue(SlotPath(nSlot), u"Channel"_s, stKey.nChannel);
    }
    QSaveFile objFile(vm_sFile);
    const QByteArray sText = CSFunc::s_F_s_UnicodeToUtf8(objXml.m_F_s_GetXML());
    return objFile.open(QIODevice::WriteOnly) && objFile.write(sText) == sText.size() && objFile.commit();
}
