#ifndef TESTS_BROWSER_PAGEFAULTS_H
#define TESTS_BROWSER_PAGEFAULTS_H

#include <QString>

namespace BrowserTest {

class Browser;

/*!
    \brief What is wrong with the page that \a browser shows, for a person; empty when nothing is.

    Holds for every exported page: all pictures, those of the style sheet too, are there; nothing
    runs as a script; nothing is fetched from outside \a folder; nothing reaches over the page's
    own \a width, nor over the window's. A \a width of 0 is as wide as the window.
*/
QString pageFaults(Browser &browser, const QString &folder, int width);

//! Writes the whole page in pieces of at most 2000 pixels: \a path-1.png and so on.
//! \return how many, 0 when one could not be written.
int writeScreenshots(Browser &browser, const QString &path);

} // namespace BrowserTest

#endif
