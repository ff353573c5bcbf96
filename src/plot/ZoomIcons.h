#pragma once

#include <QIcon>

// The icons of a plot window's buttons, drawn for 22 x 22 and sharp at any scale.
QIcon previousZoomIcon();
QIcon nextZoomIcon();
QIcon scaleFullIcon();
QIcon scaleHorizontalIcon();
QIcon scaleVerticalIcon();
