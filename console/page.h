#pragma once

#include "feed/snapshot.h"
#include "feed/upsfeed.h"

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

/// One page of the console.
class Page : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Brings everything on the page to the state of @p snapshot; nothing older is left standing.
    virtual void showSnapshot(const Snapshot &snapshot) = 0;

    /// The feed that takes the page's commands; what it does not support is not offered.
    void setFeed(UpsFeed *feed);

protected:
    bool supports(Command command) const;
    void give(Command command);
    /// Enables and disables the page's controls after a change of the feed.
    virtual void offerCommands();

private:
    QPointer<UpsFeed> feed;
};
