#include "live/CLayoutStore.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <algorithm>

#include "fleetlink/fleetlink.h"
#include "recorders/CRecorderStore.h"

using namespace Qt::StringLiterals;

namespace {

const QString g_sWindow = u"/root/Window"_s;
const QString g_sLayout = u"/root/Layout"_s;

struct stDef_Row
{
    const QString& sNode;
    stDef_Member<stDef_Layout> stMember;
    int nMin = 0;
    int nMax = 1;
};

// A number beyond its range takes its default.
const stDef_Row g_astRows[] = {
    {g_sWindow, {"FullScreen", &stDef_Layout::bFullScreen}},
    {g_sWindow, {"Language", &stDef_Layout::nLanguage, "", 1}},
    {g_sWindow, {"PtzPanel", &stDef_Layout::bPtzPanel}},
    {g_sWindow, {"PtzSpeed", &stDef_Layout::nPtzSpeed, "", 5}, 1, 10},
    {g_sLayout, {"Shape", &stDef_Layout::nShape, "", 4}, 1, 16},
    {g_sLayout, {"Page", &stDef_Layout::nPage}, 0, CLayoutStore::MaxSlots},
};

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
    stLayout.sGeometry = QByteArray::fromBase64(objXml.m_F_s_Value(g_sWindow, u"Geometry"_s).toLatin1());
    for (const stDef_Row& stRow : g_astRows) {
        nsMembers::ReadOne(objXml, stRow.sNode, stRow.stMember, stLayout);
        const int nValue = nsMembers::Text(stLayout, stRow.stMember.pMember).toInt();
        if (nValue < stRow.nMin || nValue > stRow.nMax)
            nsMembers::SetText(stLayout, stRow.stMember.pMember, QString::number(stRow.stMember.nDefault));
    }
    if (!IsShape(stLayout.nShape))
        stLayout.nShape = stDef_Layout().nShape;
    const int nSlots = std::min(objXml.m_F_n_GetValueInt(g_sLayout, u"count"_s, 0), MaxSlots);
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
    for (const stDef_Row& stRow : g_astRows)
        nsMembers::WriteOne(objXml, stRow.sNode, stRow.stMember, stLayout);
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
