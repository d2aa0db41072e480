// The engines that take entries out of a list: what goes is worked out, the list's store is
// rewritten whole or left as it was, and only then the rows go from the screen.
//
// They show nothing and tell nobody: an error is thrown, and the list on the screen is then as it
// was before.
#pragma once

#include "editing/rewrite_plan.h"
#include "storage/raised_error.h"

namespace torvane {

/// The store isn't what the list was filled from, or what the last command left there: another
/// program has changed it. Nothing has been written.
class ListHasChanged : public RaisedError {
 public:
  ListHasChanged();
};

/// What a command did to a store, for taking it back.
struct Deletion {
  Text store;  ///< as ValueStore::Identity
  std::shared_ptr<const StorePicture> before;
  std::shared_ptr<const StorePicture> after;
  Clearing clearing = Clearing::EachValue;
  std::vector<Text> gone;  ///< the names in `before` of the entries that went
};

/// Takes entries out of a list that a reader filled and out of its store, and keeps the counters in
/// step (All sets them to 0). Throws ListHasChanged, and RaisedError where the store refuses, as it
/// was before then.
Deletion DeleteEntries(List& list, Doomed doomed);

/// Puts the store of the list on show back as it was before a command, and shows the list anew with
/// the entries that came back selected and in sight. Throws as DeleteEntries does.
void PutBackEntries(List& list, const Deletion& deletion);

// The engines by the command and by where the list is stored. The list has at least one item.
inline void DeleteMissingFromRegistry(List& list) {
  DeleteEntries(list, Doomed::Missing);
}
inline void DeleteSelectedFromRegistry(List& list) {
  DeleteEntries(list, Doomed::Selected);
}
inline void DeleteAllFromRegistry(List& list) {
  DeleteEntries(list, Doomed::All);
}
inline void DeleteMissingFromIni(List& list) {
  DeleteEntries(list, Doomed::Missing);
}
inline void DeleteSelectedFromIni(List& list) {
  DeleteEntries(list, Doomed::Selected);
}
inline void DeleteAllFromIni(List& list) {
  DeleteEntries(list, Doomed::All);
}

}  // namespace torvane
