#pragma once

#include "data/xmldata.h"
#include "figures/finishedtest.h"

#include <QString>

#include <functional>

/// Tests that could not be brought into the store because another program held it: each waits in a
/// small database of its own beside the store's file, FILE.spare-N, with its report, until the
/// store takes it in. What keep() has acknowledged survives a kill at any moment. Main thread only.
namespace velometer::SpareStore {

/// False, and nothing is kept, when no file can be written beside @p store.
bool keep(const QString &store, const FinishedTest &test, XMLData report);

/// Hands what waits beside @p store to @p take, the oldest first, and removes what that has taken;
/// ends at the first one that it has not. What cannot be read stays where it is.
void handOver(const QString &store,
              const std::function<bool(const FinishedTest &, XMLData *)> &take);

/// Removes what waits beside @p store.
void remove(const QString &store);

} // namespace velometer::SpareStore
