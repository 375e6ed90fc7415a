#include "pool/poolfrontend.h"

#include "additions/localizedstrings.h"

QString PoolAlert::messageText() const
{
    return ov_localizedString(messageKey);
}

QString PoolAlert::informativeTextShown() const
{
    return informativeText.isEmpty() ? ov_localizedString(informativeKey) : informativeText;
}
