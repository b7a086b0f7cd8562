#include "core/CPtzCommand.h"

#include <QtGlobal>
#include <algorithm>
#include <iterator>

#include "core/CommandNumbers.h"

namespace {

struct stDef_CommandRow
{
    int nCmd;
    const char* pszUrl;
};

// {c} is the camera, {1} the first parameter as it stands; {r1} and {r2} are the parameters as rates.
constexpr stDef_CommandRow g_astCommands[] = {
    {nsCMS::PtzCommand_UpLeft, "cgi-bin/ptz.cgi?move=upleft&camera={c}&speed={1}"},
    {nsCMS::PtzCommand_Up, "cgi-bin/ptz.cgi?move=up&camera={c}&speed={1}"},
    {nsCMS::PtzCommand_UpRight, "cgi-bin/ptz.cgi?move=upright&camera={c}&speed={1}"},
    {nsCMS::PtzCommand_Left, "cgi-bin/ptz.cgi?move=left&camera={c}&speed={1}"},
    {nsCMS::PtzCommand_Right, "cgi-bin/ptz.cgi?move=right&camera={c}&speed={1}"},
    {nsCMS::PtzCommand_DownLeft, "cgi-bin/ptz.cgi?move=downleft&camera={c}&speed={1}"},
    {nsCMS::PtzCommand_Down, "cgi-bin/ptz.cgi?move=down&camera={c}&speed={1}"},
    {nsCMS::PtzCommand_DownRight, "cgi-bin/ptz.cgi?move=downright&camera={c}&speed={1}"},
    {nsCMS::PtzCommand_Home, "cgi-bin/ptz.cgi?move=home&camera={c}&speed={1}"},
    {nsCMS::PtzCommand_TourOn, "cgi-bin/ptz.cgi?tournum={1}&tour=on&camera={c}"},
    {nsCMS::PtzCommand_TourOff, "cgi-bin/ptz.cgi?tournum={1}&tour=off&camera={c}"},
    {nsCMS::PtzCommand_IrisUp, "cgi-bin/ptz.cgi?move=irisup&camera={c}&speed={1}"},
    {nsCMS::PtzCommand_IrisDown, "cgi-bin/ptz.cgi?move=irisdown&camera={c}&speed={1}"},
    {nsCMS::PtzCommand_AutoIris, "cgi-bin/ptz.cgi?autoiris=on&camera={c}"},
    {nsCMS::PtzCommand_FocusUp, "cgi-bin/ptz.cgi?move=focusup&camera={c}&speed={1}"},
    {nsCMS::PtzCommand_FocusDown, "cgi-bin/ptz.cgi?move=focusdown&camera={c}&speed={1}"},
    {nsCMS::PtzCommand_AutoFocus, "cgi-bin/ptz.cgi?autofocus=on&camera={c}"},
    {nsCMS::PtzCommand_ZoomIn, "cgi-bin/ptz.cgi?rzoom=1&camera={c}&speed={1}"},
    {nsCMS::PtzCommand_ZoomOut, "cgi-bin/ptz.cgi?rzoom=-1&camera={c}&speed={1}"},
    {nsCMS::PtzCommand_AutoPanOn, "cgi-bin/ptz.cgi?autopan=on&camera={c}&speed={1}"},
    {nsCMS::PtzCommand_AutoPanOff, "cgi-bin/ptz.cgi?autopan=off&camera={c}&speed={1}"},
    {nsCMS::PtzCommand_GoToPreset, "cgi-bin/ptz.cgi?gotoserverpresetno={1}&camera={c}"},
    {nsCMS::PtzCommand_MovePanTilt, "cgi-bin/ptz.cgi?continuouspantiltmove={r1}:{r2}&camera={c}&speed=0"},
    {nsCMS::PtzCommand_StopPanTilt, "cgi-bin/ptz.cgi?continuouspantiltmove=0:0&camera={c}&speed=0"},
    {nsCMS::PtzCommand_MoveZoom, "cgi-bin/ptz.cgi?continuouszoommove={r1},0&camera={c}"},
};

// Tenths of the full rate, which is 32768 here; the shift wraps around as 32 bits do.
int Rate(int nTenths)
{
    return static_cast<qint32>(static_cast<quint32>(nTenths) << 15) / 10;
}

} // namespace

QByteArray CPtzCommand::s_F_s_Url(int nCmd, int nCamera, int nParam1, int nParam2)
{
    const auto* const pRow = std::find_if(std::begin(g_astCommands), std::end(g_astCommands),
                                          [nCmd](const stDef_CommandRow& st) { return st.nCmd == nCmd; });
    if (pRow == std::end(g_astCommands))
        return {};
    QByteArray sUrl(pRow->pszUrl);
    sUrl.replace("{c}", QByteArray::number(nCamera));
    sUrl.replace("{1}", QByteArray::number(nParam1));
    sUrl.replace("{r1}", QByteArray::number(Rate(nParam1)));
    sUrl.replace("{r2}", QByteArray::number(Rate(nParam2)));
    return sUrl;
}
