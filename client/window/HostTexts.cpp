#include "window/HostTexts.h"

#include <QRegularExpression>

#include "fleetlink/fleetlink.h"

using namespace Qt::StringLiterals;

QString Tr(const stDef_Text& stText)
{
    QString sText;
    CAppEnv::s_objEnv.m_F_n_LoadString(QString::fromUtf8(stText.pszKey), sText, QString::fromUtf8(stText.pszDefault));
    return sText;
}

QString PlainText(QString sText)
{
    static const QRegularExpression s_objMnemonic(u"\\(&.\\)|&|\u2026"_s);
    return sText.remove(s_objMnemonic);
}
