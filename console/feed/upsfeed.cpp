#include "upsfeed.h"

UpsFeed::UpsFeed(QObject *parent)
    : QObject(parent)
{
    qRegisterMetaType<Snapshot>();
}

UpsFeed::~UpsFeed() = default;

bool UpsFeed::supports(Command) const
{
    return false;
}

bool UpsFeed::command(Command)
{
    return false;
}
