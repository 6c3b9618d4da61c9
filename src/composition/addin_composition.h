// The parts the add-in is made of, as every composition root (the DLL inside Outlook,
// the simulated Outlook, zintra-sim) hands them to ZintraAddinApp (AddinParts): contact
// tracking, the toolbar (with the Word letters) and folder monitoring. The toolbar files a
// contact's letters in the journal folder of the folder set the contact's folder belongs
// to; it finds that set through the add-in that `addin` returns when asked (nullptr while
// none is loaded).
#pragma once

#include <functional>
#include <memory>

#include "src/addin/addin_part.h"

namespace zintra {

class Folder;
class TrackedContacts;
class ZintraAddinApp;

using AddinLookup = std::function<std::shared_ptr<ZintraAddinApp>()>;

AddinParts MakeAddinParts(AddinLookup addin);

// The journal folder of the folder set whose contact folder is `contact_folder`;
// nullptr when the folder is not tracked or its set has none.
std::shared_ptr<Folder> JournalFolderOfSet(const std::shared_ptr<TrackedContacts>& tracked,
                                           const std::shared_ptr<Folder>& contact_folder);

}  // namespace zintra
