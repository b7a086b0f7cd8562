#pragma once

#include <QString>

class CWndNvrEmbedded;
class QWidget;

namespace nsDirectoryTest {

/// Sends the recorder's id, public address and port to the directory service that its system information names, and
/// returns the reply in capitals, or "FAILED". Takes up to 10 s, in which windows live on. The page is borrowed.
QString Run(CWndNvrEmbedded& objNvr, QWidget* pPage);

} // namespace nsDirectoryTest
