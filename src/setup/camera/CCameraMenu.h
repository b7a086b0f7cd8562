#pragma once

#include <QStringList>
#include <functional>

class CTextSource;
class QPoint;
class QWidget;

/// The quick setup menu of a camera: switch places with another one, copy to others, remove all.
class CCameraMenu
{
public:
    struct stDef_Actions
    {
        std::function<void(int nOther)> fnSwitchTo;
        std::function<void(int nOther)> fnCopyTo;
        std::function<void()> fnCopyToAll;
        std::function<void()> fnRemoveAll;
    };

    /// Shows the menu for camera `nSelected` of those named, and does what is chosen.
    static void s_S_Run(QWidget* pParent, const CTextSource& objTexts, const QPoint& ptGlobal,
                        const QStringList& arNames, int nSelected, bool bCopyable, const stDef_Actions& stActions);
};
