#include "live/CSnapshot.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {

constexpr int FastPacking = 85;     // a high "quality" packs less, but doesn't hold up the window
constexpr int MostOfOneName = 1000; // pictures of one channel within one second
constexpr int MaxNameLength = 80;
constexpr int MaxNameBytes = 200; // file systems allow 255, with time, number and ending

} // namespace

QString CSnapshot::s_F_s_Folder()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)).filePath(u"Zentrix CMS"_s);
}

QString CSnapshot::s_F_s_SafeName(const QString& sTitle)
{
    QString sName = sTitle.simplified().left(MaxNameLength);
    for (QChar& c : sName) {
        if (c.category() == QChar::Punctuation_Dash)
            c = u'-';
        else if (!c.isLetterOrNumber() && !c.isMark() && !u" -_()（）"_s.contains(c))
            c = u'_';
    }
    QStringList arWords = sName.split(u' ');
    arWords.removeIf([](const QString& sWord) { return sWord.count(u'_') == sWord.size(); });
    sName = arWords.join(u' ');
    while (sName.toUtf8().size() > MaxNameBytes)
        sName.chop(1);
    return sName.trimmed();
}

QString CSnapshot::s_F_s_Save(const QImage& objImage, const QString& sFolder, const QString& sTitle,
                              const QDateTime& tmTaken)
{
    if (objImage.isNull() || !QDir().mkpath(sFolder))
        return {};
    const QString sBase = u"%1 %2"_s.arg(s_F_s_SafeName(sTitle), tmTaken.toString(u"yyyy-MM-dd HH-mm-ss"_s)).trimmed();
    for (int nTry = 1; nTry <= MostOfOneName; ++nTry) {
        const QString sNumber = nTry == 1 ? QString() : u" (%1)"_s.arg(nTry);
        QFile objFile(QDir(sFolder).filePath(sBase + sNumber + u".png"_s));
        if (objFile.exists())
            continue;
        if (!objFile.open(QIODevice::WriteOnly | QIODevice::NewOnly))
            return {};
        if (objImage.save(&objFile, "PNG", FastPacking) && objFile.flush())
            return objFile.fileName();
        objFile.remove();
        return {};
    }
    return {};
}
