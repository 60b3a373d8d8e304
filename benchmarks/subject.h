// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <QtCore/QSize>
#include <QtCore/QVector>
#include <QtGui/QImage>
#include <QtWidgets/QWidget>

#include <memory>

/// One thing whose speed is measured: a widget of the library, a peer, or the least program
/// that shows the same.
struct Subject
{
    enum Kind {
        Library, ///< of this library
        Peer,    ///< of Qt or Qwt
        Minimal, ///< does only what its image takes
    };

    const char *name;
    Kind kind;
    QSize size;
    /// Builds it with the content that it is measured with.
    QWidget *(*create)(QWidget *parent);
    /// Changes the value, text or state that a console changes most; another @p step is another
    /// one.
    void (*change)(QWidget *widget, int step);
};

/// All subjects, the library's first.
const QVector<Subject> &subjects();

/// The subject of that name, or null.
const Subject *subjectNamed(const QByteArray &name);

/// A subject's widget, shown in a window, of the subject's size, and the image that it is
/// rendered into. Its updates are off, so that delivering events does not paint it into its window
/// besides.
class SubjectStage
{
public:
    explicit SubjectStage(const Subject &subject);
    ~SubjectStage();

    /// Renders the widget as it is.
    void repaint();
    /// Changes it, delivers the posted events, and renders it.
    void changeAndRepaint();
    /// One SourceOver copy of a translucent image of the widget's size.
    void blit();
    /// Renders a widget that does nothing but show that image.
    void floor();

private:
    const Subject &subject;
    QWidget window;
    QWidget *widget;
    std::unique_ptr<QWidget> shower;
    QImage target;
    QImage image;
    int step = 0;
};

/// Builds the subject's widget in @p window, shows it, and deletes it.
void constructAndDestroy(const Subject &subject, QWidget *window);

/// Builds the subject's widget in @p window, shows it, and paints it once.
void addPainted(const Subject &subject, QWidget *window);

/// A window for these, shown.
std::unique_ptr<QWidget> shownWindow();
