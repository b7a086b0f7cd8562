#include "live/CChannelDrag.h"

#include <QMimeData>
#include <QStringList>

#include "recorders/CRecorderStore.h"

using namespace Qt::StringLiterals;

QMimeData* CChannelDrag::s_F_p_Make(const QList<stDef_ChannelKey>& arKeys)
{
    QStringList arLines;
    for (const stDef_ChannelKey& stKey : arKeys)
        arLines.append(u"%1/%2"_s.arg(stKey.nNvrID).arg(stKey.nChannel));
    auto* const pData = new QMimeData;
    pData->setData(QString::fromLatin1(MimeType), arLines.join(u'\n').toLatin1());
    return pData;
}

QList<stDef_ChannelKey> CChannelDrag::s_F_ar_Read(const QMimeData* pData)
{
    QList<stDef_ChannelKey> arKeys;
    const QByteArray sAll = pData ? pData->data(QString::fromLatin1(MimeType)) : QByteArray();
    for (const QByteArray& sLine : sAll.split('\n')) {
        const QList<QByteArray> arParts = sLine.split('/');
        bool bNvr = false;
        bool bChannel = false;
        const stDef_ChannelKey stKey{arParts.value(0).toInt(&bNvr), arParts.value(1).toInt(&bChannel)};
        if (arParts.size() == 2 && bNvr && bChannel && stKey.nNvrID >= 0 &&
            stKey.nNvrID < CRecorderStore::MaxRecorders && stKey.nChannel >= 0 &&
            stKey.nChannel < CRecorderStore::MaxChannels)
            arKeys.append(stKey);
    }
    return arKeys;
}
