#pragma once

#include "base/LocalizedText.h"
#include "support/QtPrinters.h"

#include <QList>
#include <gtest/gtest.h>

namespace tavrin::testing {

/// A text and how it should read.
struct Caption {
    LocalizedText text;
    QStringView zhHans;
    QStringView zhHant;
    QStringView en;
};

inline void expectCaptions(const QList<Caption>& captions)
{
    for (const Caption& caption : captions) {
        EXPECT_EQ(caption.text.zhHans.toString(), caption.zhHans.toString());
        EXPECT_EQ(caption.text.zhHant.toString(), caption.zhHant.toString());
        EXPECT_EQ(caption.text.en.toString(), caption.en.toString());
    }
}

} // namespace tavrin::testing
