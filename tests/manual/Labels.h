#pragma once

#include <QStringList>

// Texts of the windows that are no messages: what controls are called and described as, and what empty places
// say. Those of three words and more, without the marks of what is variable.
inline const QStringList labels{
    // main window
    QStringLiteral("Click to add files"),
    QStringLiteral("About this program"),
    QStringLiteral("The files that are open. Delete removes those that are selected."),
    QStringLiteral("Asks for files and opens them, as Ctrl+O does"),
    QStringLiteral("Closes the files that are selected in the list"),
    QStringLiteral("Writes what the files hold to a file of another kind, as Ctrl+E does"),
    QStringLiteral("Opens the manual, as F1 does"),
    QStringLiteral("Closes the program, as Ctrl+Q does"),
    QStringLiteral("Drop files here or choose them with +"),
    // tabs
    QStringLiteral("How much of all files is loaded, and how many are not yet"),
    QStringLiteral("What is wrong with a file or an export shows here"),
    QStringLiteral("What was wrong with files and exports, the newest last"),
    QStringLiteral("Pages about all files together; the arrow keys change the page"),
    QStringLiteral("There are new messages"),
    QStringLiteral("Double-click or Drag to plot"),
    QStringLiteral(
        "One column for each instrument and kind of record. Return plots the variable. Shift+Return adds "
        "it to the plot that was used last, Ctrl+Return to the right axis of that plot."),
    QStringLiteral("Instruments and kinds of record"),
    QStringLiteral("The variables of the files that you add show here"),
    // export
    QStringLiteral("Data to export:"),
    QStringLiteral("Instruments and kinds of record that the open files hold"),
    QStringLiteral("Path of the file to be written"),
    QStringLiteral("Chooses the file to be written"),
    QStringLiteral("Format of the file to be written"),
    QStringLiteral("Time that each file covers when the export is split"),
    QStringLiteral("Columns of a text file that tell the time"),
    QStringLiteral("A column of a text file that tells the time"),
    QStringLiteral("Closes this window and writes nothing"),
    QStringLiteral("Writes the file"),
    QStringLiteral("How much of the data is written"),
    QStringLiteral("Ends the export; what is written stays"),
    // plots
    QStringLiteral("A number with a decimal point; Return applies it"),
    QStringLiteral("Go to previous zoom level"),
    QStringLiteral("Go to next zoom level"),
    QStringLiteral("Auto scale to view entire data set"),
    QStringLiteral("Auto scale horizontally"),
    QStringLiteral("Auto scale vertically"),
    QStringLiteral("Shows the range between the two values on the left axis"),
    QStringLiteral("Lowest value of the left axis"),
    QStringLiteral("Highest value of the left axis"),
    QStringLiteral("Prints the plot, as Ctrl+P does"),
    QStringLiteral("Closes this window, as Escape does"),
    QStringLiteral("Nothing to draw: there is no value"),
    QStringLiteral("Nothing to draw in this view: draw a rectangle to see single records"),
    QStringLiteral("Nothing to draw in this view: click the right button to see everything"),
    QStringLiteral("Curves against time"),
    QStringLiteral("A curve of the plot. Space hides it or shows it again."),
    QStringLiteral("Minus and plus go back and forth in the history of views, Escape closes the window. Left "
                   "and right move a mark; Return at both ends of a range of time shows that range."),
};
