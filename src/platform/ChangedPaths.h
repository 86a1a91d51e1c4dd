#pragma once

#include <set>

#include "Place.h"

/// What has been changed on disk and may still be in the system's memory alone. For the file layer.
class ChangedPaths {
 public:
  /// The content of the file at `native`.
  void NoteFile(const Native::NativeText& native) { files_.insert(native); }
  /// The entries of the folder that holds `native`.
  void NoteEntry(const Native::NativeText& native) { folders_.insert(Native::FolderOf(native)); }
  /// A file or folder goes by another name from now on, with all in it.
  void NoteRename(const Native::NativeText& from, const Native::NativeText& to);
  /// Brings all of it to the disk, and forgets what is there. What has gone since is left out. The
  /// data of all files goes first: the first sync makes file systems commit the lengths and names
  /// of others too, and a cut of power then must not find them empty.
  void Sync();

 private:
  std::set<Native::NativeText> files_;
  std::set<Native::NativeText> folders_;
};
