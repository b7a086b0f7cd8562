#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

#include "live/stDef_ChannelKey.h"

/// What a window is to come back with.
struct stDef_Layout
{
    int nShape = 4; ///< cells a page
    int nPage = 0;
    std::vector<stDef_ChannelKey> arSlots; ///< page by page; a number of -1 is an empty slot
    QByteArray sGeometry;                  ///< of the window, as the window system has it; may be empty
    bool bFullScreen = false;
    int nLanguage = 1; ///< 0 Traditional Chinese, 1 English
    bool bPtzPanel = false;
    int nPtzSpeed = 5; ///< 1 to 10
};

/// Keeps the layout in `Host.xml` of the configuration folder.
class CLayoutStore
{
public:
    static constexpr int MaxSlots = 1024;

    explicit CLayoutStore(const QString& sConfigFolder);

    /// False, with the layout untouched, if there is none that can be used; a damaged file is kept aside as
    /// `Host.damaged.xml`. Values beyond their range take their default, slots that name nothing are empty.
    bool m_F_b_Load(stDef_Layout& stLayout) const;
    /// Through a temporary file that takes the place of the old one at once.
    bool m_F_b_Save(const stDef_Layout& stLayout) const;

private:
    QString vm_sFile;
    QString vm_sDamaged;
};
