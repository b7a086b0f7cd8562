#include "core/backup/CBackupNames.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype MountPrefix = 13; ///< characters before the name of an embedded recorder's disk
constexpr int RestParts = 3;          ///< of a path, that stand under the folder of the disk

/// What stands before the last three parts, and these.
std::pair<QString, QString> Cut(const QString& sPath)
{
    qsizetype nCut = sPath.size();
    for (int n = 0; n < RestParts && nCut >= 0; ++n)
        nCut = nCut > 0 ? sPath.lastIndexOf(u'/', nCut - 1) : -1;
    return nCut < 0 ? std::pair(QString(), QString()) : std::pair(sPath.left(nCut), sPath.mid(nCut + 1));
}

} // namespace

CBackupNames::CBackupNames(const QStringList* pFolderMap)
{
    for (const QString& sItem : pFolderMap ? *pFolderMap : QStringList()) {
        const qsizetype nCut = sItem.indexOf(u'_', 1);
        if (nCut < 1 || sItem.left(nCut) == sItem.mid(nCut + 1))
            continue;
        vm_arMap.append({u'/' + sItem.left(nCut) + u'/', u'/' + sItem.mid(nCut + 1) + u'/'});
    }
}

QString CBackupNames::s_F_s_Text(const QByteArray& sRemote)
{
    const QString sText = QString::fromUtf8(sRemote);
    return sText.toUtf8() == sRemote ? sText : QString::fromLatin1(sRemote);
}

std::optional<QString> CBackupNames::s_F_s_Safe(QString sName)
{
    sName.replace(u'\\', u'/');
    const QStringList arParts = sName.split(u'/');
    const bool bSafe = std::all_of(arParts.begin(), arParts.end(), [](const QString& s) {
        return !s.isEmpty() && s != u"." && s != u".." && !s.contains(u'\0') && !s.contains(u':');
    });
    return bSafe ? std::optional(sName) : std::nullopt;
}

std::optional<QString> CBackupNames::m_F_s_Local(const QString& sHead, const QString& sRest) const
{
    QString sName = u'/' + sHead + u'/' + sRest;
    if (!s_F_s_Safe(sName.mid(1)))
        return std::nullopt;
    for (const auto& [sOld, sNew] : vm_arMap) {
        const qsizetype nAt = sName.indexOf(sOld, 1); // never the folder of the disk
        if (nAt < 0)
            continue;
        sName.replace(nAt, sOld.size(), sNew);
        break;
    }
    return s_F_s_Safe(sName.mid(1)); // the map may lead out of the target, too
}

std::optional<QString> CBackupNames::m_F_s_Embedded(const QByteArray& sRemote) const
{
    QString sPath = s_F_s_Text(sRemote);
    const auto [sHead, sRest] = Cut(sPath);
    const QString sDisk = sHead.mid(MountPrefix).section(u'/', 0, 0);
    return sDisk.isEmpty() ? std::nullopt : m_F_s_Local(sDisk + "_record"_L1, sRest);
}

std::optional<QString> CBackupNames::m_F_s_PC(const QByteArray& sRemote) const
{
    QString sPath = s_F_s_Text(sRemote);
    sPath.replace(u'\\', u'/');
    const QString sRest = Cut(sPath).second;
    const QChar cDrive = sPath.isEmpty() ? QChar() : sPath.front();
    const bool bDrive = cDrive.unicode() < 0x80 && cDrive.isLetterOrNumber();
    return !bDrive || sRest.isEmpty() ? std::nullopt : m_F_s_Local(cDrive + "_Reord"_L1, sRest);
}

QByteArray CBackupNames::s_F_s_Beside(const QByteArray& sRemote, const QString& sName)
{
    return sRemote.left(std::max(sRemote.lastIndexOf('/'), sRemote.lastIndexOf('\\')) + 1) + sName.toUtf8();
}

QString CBackupNames::s_F_s_DataName(const QString& sName)
{
    const qsizetype nDot = sName.lastIndexOf(u'.');
    return (nDot > 0 ? sName.left(nDot) : sName) + ".dat"_L1;
}
