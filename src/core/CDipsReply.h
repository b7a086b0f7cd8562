#pragma once

#include <QByteArray>

/// The answer of the DIPS directory service.
class CDipsReply
{
public:
    /// Finds "http://address:port" in the text. The address ends at the last colon of all that follows, and the port is
    /// the decimal number behind that colon, 0 if there is none. False leaves both results as they were.
    static bool s_F_b_Parse(const QByteArray& sReply, QByteArray& sAddress, int& nPort);
};
