#pragma once

class FileItemView;
class MyFrame;
class QDialog;

// The keys of the main window, with `list` as its list of files. F1 and Ctrl+Q work in every window but those
// that are modal to it.
void addKeysOfFrame(MyFrame &frame, FileItemView &list);

// The keys that such a window needs of its own: Ctrl+W and Ctrl+Q leave it as its close button does.
void addKeysOfDialog(QDialog &dialog, MyFrame &frame);
