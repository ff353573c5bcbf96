#pragma once

#include <QIcon>

// The icons of the buttons that add and remove files: pixel images at 22 x 22, and the same drawn anew where
// the screen asks for more pixels.
QIcon addFileIcon();
QIcon removeFileIcon();
