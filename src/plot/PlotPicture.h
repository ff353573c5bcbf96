#pragma once

#include <QImage>
#include <QSize>
#include <QString>

class QPrinter;
class QwtPlot;

// Pictures of a plot on white paper, whatever the colours of the desktop. Sizes are in pixels of 96 to the
// inch; a plot that was never shown is drawn all the same.

QImage pictureOf(QwtPlot &plot, const QSize &size, double pixelRatio = 1);

// True when the path ends in .png, .svg or .pdf, in any letter case.
bool isPictureName(const QString &path);

// Writes the picture in the format that the path's ending names; gives why it could not be written, or an
// empty text. An earlier file is replaced by the whole picture or stays as it is,
// unless its folder takes no new files: then it is written over.
QString writePicture(QwtPlot &plot, const QString &path, const QSize &size);

// Draws the plot on the printer's page; gives why that could not be done, or an empty text.
QString printPicture(QwtPlot &plot, QPrinter &printer);
