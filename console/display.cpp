#include "display.h"

elemDesc_t shownState(ElementState state)
{
    return {quint8(state.alarm), quint8(state.operating)};
}

QString sentence(QString text)
{
    if (!text.isEmpty())
        text[0] = text.at(0).toUpper();
    return text;
}
