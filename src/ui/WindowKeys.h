#pragma once

class FileItemView;
class MyFrame;

// The keys of the main window, with `list` as its list of files, and of every dialog. F1 and Ctrl+Q work in
// all windows, Ctrl+W leaves a modal dialog as its close button does.
void addKeysOfFrame(MyFrame &frame, FileItemView &list);
