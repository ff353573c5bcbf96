#pragma once

#include <QIcon>

// The program's icon for window frames and task bars, in the sizes that desktops ask for. It is part of the
// program, so that it shows without an installed icon theme, too. Interface thread only.
QIcon applicationIcon();
