#include "page.h"

void Page::setFeed(UpsFeed *newFeed)
{
    feed = newFeed;
    offerCommands();
}

bool Page::supports(Command command) const
{
    return feed && feed->supports(command);
}

void Page::give(Command command)
{
    // A refused command changes nothing: the next snapshot shows what is.
    if (feed)
        feed->command(command);
}

void Page::offerCommands()
{}
