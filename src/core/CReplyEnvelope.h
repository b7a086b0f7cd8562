#pragma once

#include <QString>

/// The envelope that recorders put around their documents.
class CReplyEnvelope
{
public:
    /// The text from the first "<root>" up to and including the "</root>" behind it; the whole text if there is no
    /// "<root>". Without a "</root>" at most the first five characters are left, which no parser takes for a document.
    static QString s_F_s_CutRoot(const QString& sReply);
};
