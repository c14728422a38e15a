#pragma once

#include <gtest/gtest.h>

#include <QImage>

#include <string>

/// Compares pictures with references that lie beside the tests that ask for them.
///
///     const ReferencePictures references("arborium/tests/render/pictures");
///     EXPECT_TRUE(references.match("Cube", picture));
///
/// A pixel differs if one of its channels is off by more than `channelTolerance`. A picture matches
/// if it has the size of its reference, if no more than one pixel in `pixelTolerance` differs, and if
/// the channels are off by less than `meanTolerance` in the mean. That is what another version of the
/// rasteriser may do to the edges; a shape that is moved by a pixel does not match.
///
/// A picture that does not match is left as NAME.actual.png in the folder in which the tests run,
/// with NAME.difference.png beside it: grey where the two are alike, the brighter red the more they
/// differ. scripts/reference-pictures makes the references anew.
class ReferencePictures {
public:
    static constexpr int channelTolerance = 8;
    static constexpr int pixelTolerance = 1000;
    static constexpr double meanTolerance = 0.1;

    /// The folder is below the root of the sources.
    explicit ReferencePictures(const std::string& folder);

    testing::AssertionResult match(const std::string& name, const QImage& picture) const;
    /// As `match`, with a reference at hand, and without files of what differs.
    static testing::AssertionResult compare(const QImage& picture, const QImage& reference,
                                            QImage* difference = nullptr);

private:
    std::string m_folder;
};
