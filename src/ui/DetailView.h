#pragma once

#include <QImage>
#include <QObject>
#include <QPixmap>
#include <functional>
#include <string>

class FileSystem;
class PictureSurface;
class QPlainTextEdit;
class QWidget;
class clsIMGtool;
class skinBtn;

/// The detail area below the lists: the picture or the long text of what is selected in them, and
/// the two tabs that switch between picture and text. Both are kept up to date whichever is shown.
///
/// The controls are children of the form and stand at their design places until it moves them.
class DetailView : public QObject {
  Q_OBJECT

 public:
  /// `TempDir`: DOS path text of the folder through which pictures come out of `ModPackIMG`, the
  /// open pack; it may change until the first one. `PlayClick` plays the click of a tab.
  DetailView(QWidget* form, const FileSystem& files, const clsIMGtool& ModPackIMG,
             const std::string& TempDir, std::function<void()> PlayClick);

  skinBtn* const cmdPicture;
  skinBtn* const cmdDescription;
  PictureSurface* const picDescPic;
  QPlainTextEdit* const txtDescription;  ///< covers `picDescPic`, which holds it, when visible

  /// Shows the picture of that entry of the pack, or the built-in one for an empty name, fitted to
  /// the present size of `picDescPic`. The pack is read only if the name isn't `Tag`. Has a trap:
  /// if the pack has no such entry, or it is no picture, tag and picture stay.
  void SetPicture(const std::string& PictureName);
  /// Name of the entry whose picture is loaded; empty for the built-in one.
  [[nodiscard]] const std::string& Tag() const { return tag_; }

  /// Gives the text box its text (engine text, lines separated by CR LF). A text that it has
  /// already stays where the reader has scrolled it.
  void SetDescription(const std::string& text);

  // A press on a tab, with any button. Both have traps.
  void cmdPicture_MousDown();
  void cmdDescription_MousDown();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  /// A picture at its own size; where there is one, the same with more detail.
  struct Loaded {
    QImage picture;
    QImage fine;
  };

  void PrepareText() const;
  void PrepareTab(skinBtn& tab, const QString& caption, void (DetailView::*show)());
  [[nodiscard]] Loaded PictureFromPack(const std::string& name) const;
  [[nodiscard]] const Loaded& NoPicture();
  void ShowFitted(qreal ratio);
  void SwitchTo(bool toText);
  void ShowFocusOfTabs() const;

  const FileSystem& files_;
  const clsIMGtool& ModPackIMG_;
  const std::string& tempDir_;
  std::function<void()> playClick_;

  Loaded picNoPicture_;
  Loaded CurrentPicture_;
  QPixmap picBuffer_;  // where the fitted picture is composed before it is shown
  std::string tag_;
  bool tabsByKeyboard_ = false;  // how the focus came to a tab
  std::string description_;      // as it was given
};
