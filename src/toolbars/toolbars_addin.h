// ToolbarsAddin: the add-in application as the toolbar and the Word letters see it.
// The add-in's AddinServices implements it over the add-in and its tracked contacts.
//
// Called on Outlook's thread only. Members return nullptr (or a null pointer to a
// port) for what is not there: a host without the toolbar library or Word, an add-in
// that is shutting down. No member throws except the Outlook calls behind Session.
#pragma once

#include <memory>

namespace zintra {

class Application;
class ErrorHandling;
class FileSystem;
class Folder;
class MsgBox;
class Namespace;
class Platform;
class RegSettings;
class StringTable;
class ToolbarLibrary;
class Word;
class ZintraUtils;

class ToolbarsAddin {
 public:
  virtual ~ToolbarsAddin() = default;

  // The settings in force; read afresh, never kept.
  virtual const RegSettings& Settings() = 0;
  // Outlook's application object, and its MAPI namespace.
  virtual std::shared_ptr<Application> OLApp() = 0;
  virtual std::shared_ptr<Namespace> Session() = 0;
  // Links, the save bracket and the host-version tests; nullptr once released.
  virtual ZintraUtils* Utils() = 0;
  // The folder that receives the logged items of the tracked contact folder
  // `contact_folder` (its folder set's journal folder); nullptr when the folder is not
  // tracked or its set has no journal folder.
  virtual std::shared_ptr<Folder> TrackedLogFolder(
      const std::shared_ptr<Folder>& contact_folder) = 0;
  virtual const StringTable& Strings() = 0;
  virtual ErrorHandling& Errors() = 0;
  // The platform's message box (the linking question).
  virtual MsgBox& Prompt() = 0;
  virtual Platform& PlatformFacts() = 0;
  virtual FileSystem& Files() = 0;
  virtual ToolbarLibrary* ToolbarLib() = 0;
  virtual Word* WordProcessor() = 0;
  // VB's Now, as a date serial.
  virtual double Now() = 0;
};

}  // namespace zintra
