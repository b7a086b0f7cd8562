#pragma once

#include <QString>

#include "host/Export.h"

/// A text of the user interface: its key in the language files, and the English that stands where they have none.
struct stDef_Text
{
    const char* pszKey;
    const char* pszDefault;
    /// A key of this text alone, which goes first: for one whose key other windows have for something else. A file that
    /// lacks it is asked for the common one.
    const char* pszOwnKey = nullptr;
};

/// Short form for layout code: `Text{"Key", "Default"}`.
using Text = stDef_Text;

/// Where a window's texts come from.
class FLEETLINK_EXPORT CTextSource
{
public:
    virtual ~CTextSource();

    /// Text of a key, or the default if the language file has no such key. With no language file open it returns -1 and
    /// leaves `sOut` untouched: a label keeps what it shows.
    virtual int m_F_n_LoadString(const QString& sKey, QString& sOut, const QString& sDefault) const = 0;

    /// The same for a text of the interface; a closed file returns -1 here, too.
    int m_F_n_LoadText(const stDef_Text& stText, QString& sOut) const;

    /// The text for a message: empty while no language file is open.
    QString m_F_s_Text(const stDef_Text& stText) const { return m_F_s_Text(stText, {}); }
    /// The same, for what shows `sShown` already.
    QString m_F_s_Text(const stDef_Text& stText, const QString& sShown) const;
};
