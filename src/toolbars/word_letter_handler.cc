#include "src/toolbars/word_letter_handler.h"

#include "src/core/z_error.h"
#include "src/errors/cached_error.h"
#include "src/errors/error_handling.h"
#include "src/host/file_system.h"
#include "src/host/msg_box.h"
#include "src/host/outlook_application.h"
#include "src/host/platform.h"
#include "src/host/word.h"
#include "src/logging/zintra_utils.h"
#include "src/resources/string_table.h"
#include "src/toolbars/letter_ids.h"
#include "src/toolbars/toolbars.h"
#include "src/toolbars/toolbars_addin.h"

namespace zintra {

namespace {

constexpr char kWordLetterHandlerModule[] = "WordLetterHandler";

}  // namespace

std::string DocumentVariable(WordDocument& document, const std::string& name) {
  try {
    return document.Variables()->Item(name)->Value();
  } catch (const ZError& e) {
    if (e.Number() == kWordObjectDeleted) return {};
    throw;
  }
}

void WordLetterHandler::LogDocument(const std::shared_ptr<WordDocument>& Document) {
  if (!app_ || !Document) return;
  std::string log_to;
  try {
    log_to = DocumentVariable(*Document, kVarLogTo);
  } catch (...) {
    // A document whose variables cannot be read is not one we can log.
    CachedError rec;
    rec.SetToCurrentException(kWordLetterHandlerModule, "LogDocument");
    rec.Log(app_->Errors());
    return;
  }
  if (log_to.empty()) return;
  try {
    FileLetter(Document, log_to);
  } catch (...) {
    CachedError rec;
    rec.SetToCurrentException(kWordLetterHandlerModule, "LogDocument");
    rec.Log(app_->Errors());
    const StringTable& strings = app_->Strings();
    app_->Prompt().Show(strings.Load(kStrCouldNotLogDocument) + "\r\n\r\n" + rec.Description(),
                        kMsgBoxCritical, strings.Load(kStrProductName));
  }
}

void WordLetterHandler::FileLetter(const std::shared_ptr<WordDocument>& Document,
                                   const std::string& log_to) {
  auto session = app_->Session();
  if (!session) throw ZError(kErrObjectNotSet, "Object variable not set");
  const LetterId folder_id = ParseLetterId(log_to);
  auto folder = session->GetFolderFromID(folder_id.entry_id, folder_id.store_id);
  if (!folder) throw ZError(kErrObjectNotSet, "The letter's journal folder cannot be opened");
  auto entry = folder->Items()->Add(kOlJournalItem);
  entry->SetType(app_->Strings().Load(kStrJournalLetter));

  ZintraUtils* utils = app_->Utils();
  const std::string link_to = DocumentVariable(*Document, kVarLinkTo);
  if (!link_to.empty()) {
    if (!utils) throw ZError(kErrObjectNotSet, "Object variable not set");
    const LetterId contact_id = ParseLetterId(link_to);
    auto contact = session->GetItemFromID(contact_id.entry_id, contact_id.store_id);
    utils->AddToLinksCollection(entry->Links(), contact);
  }
  entry->SetSubject(DocumentVariable(*Document, kVarSubject));

  const std::string temp_file = app_->PlatformFacts().TempPath() + kLetterTempFileName;
  try {
    FileSystem& files = app_->Files();
    if (files.FileExists(temp_file)) files.Remove(temp_file);
  } catch (const ZError&) {
    // A stale copy that cannot be removed is overwritten by the save, or the save says why.
  }
  Document->SaveAs(temp_file, kWdFormatDocument);

  entry->Attachments()->Add(temp_file, kOlByValue);
  if (utils) {
    utils->SaveItem(entry);
  } else {
    entry->Save();
  }
  Document->SetSaved(true);
  Document->Close(kWdDoNotSaveChanges);
}

}  // namespace zintra
