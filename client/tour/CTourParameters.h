#pragma once

#include <QStringList>

class QDialog;
class QWidget;

/// The tour's way through the parameter sheets of cameras, from the Camera page: those that the recorder has, and of
/// the other brands one that takes the first camera's place.
class CTourParameters
{
public:
    /// `bOthers`: the brands that the recorder has no camera of, too; the camera list is another one then.
    explicit CTourParameters(bool bOthers) : vm_bOthers(bOthers) {}

    /// Begins the next thing at the Camera page. False if there is nothing left to do. While one step runs, further
    /// ones do nothing.
    bool m_F_b_Step(QWidget* pPage);
    /// Names of the pictures that are to come.
    QStringList m_F_ar_Pictures() const;
    /// Name of the picture of the sheet that stands.
    QString m_F_s_Picture() const;
    /// Whether it is such a sheet.
    static bool s_F_b_Is(const QDialog* pDialog);

private:
    int m_F_n_Cameras() const;
    void m_S_Choose(QWidget* pPage) const;
    void m_S_Replace(QWidget* pPage) const;

    bool vm_bOthers;
    bool vm_bBusy = false;
    int vm_nBrand = 0;
};
