#pragma once

#include "http/stDef_Account.h"

#include <string>
#include <vector>

/// The recorder's own accounts, and behind them those of its System document, the first 1000 at most. Left out are
/// accounts without a name, with a ":" in it, which no login can tell from the password, or with the name of one that
/// is there already: whoever starts the recorder can't be locked out by a document.
/// @param nChannels length of every mask: a camera beyond a shorter one may not be seen
std::vector<stDef_Account> WithStoredAccounts(std::vector<stDef_Account> arOwn, const std::string& sSystem,
                                              int nChannels);
