#pragma once

#include "ReferencePicture.h"

#include <arborium/io/KsDB.h>
#include <arborium/io/KsInput.h>
#include <arborium/nodes/KsPerspectiveCamera.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/render/KsGLContext.h>
#include <arborium/render/KsOffscreenRenderer.h>

#include <gtest/gtest.h>

#include <QImage>

#include <string>

/// Reads scenes and makes pictures of them. Files that a scene names are found beside the
/// references.
class PictureTest : public testing::Test {
protected:
    static constexpr int width = 128, height = 96;

    void SetUp() override
    {
        KsDB::init();
        KsInput::addDirectoryFirst(FORMWEAVE_SOURCE_DIR "/arborium/tests/render/pictures");
    }
    void TearDown() override
    {
        KsInput::clearDirectories();
        KsDB::finish();
    }

    static KsRef<KsSeparator> read(const std::string& content)
    {
        const std::string text = "#Arborium V2.1 ascii utf8\n" + content;
        KsInput in;
        in.setBuffer(text.data(), text.size());
        return KsRef<KsSeparator>(KsDB::readAll(&in));
    }
    /// Seen from the right and from above. From -3.3 to 3.3 and from -2.5 to 2.5 is in sight.
    static KsRef<KsCamera> makeCamera()
    {
        KsRef<KsPerspectiveCamera> camera(new KsPerspectiveCamera);
        camera->position = KbVec3f(2.5f, 2, 8);
        camera->heightAngle = 0.6f;
        camera->farDistance = 50.0f;
        camera->pointAt(KbVec3f(0, 0, 0));
        return KsRef<KsCamera>(camera.get());
    }
    /// The scene's own camera comes last and counts, if it has one.
    static QImage pictureOf(KsNode* scene, const QSize& size = QSize(width, height))
    {
        const KsRef<KsSeparator> root(new KsSeparator);
        root->addChild(makeCamera());
        root->addChild(scene);
        KsOffscreenRenderer renderer(KbViewportRegion(size.width(), size.height()));
        renderer.setBackgroundColor(KbColor(0.16f, 0.18f, 0.22f));
        // The same on each kind of OpenGL.
        renderer.setSamples(1);
        renderer.setSupersampling(4);
        if (!renderer.render(root)) return QImage();
        return QImage(renderer.getImage().data(), renderer.getWidth(), renderer.getHeight(),
                      QImage::Format_RGBA8888_Premultiplied)
            .copy();
    }

    const ReferencePictures references{"arborium/tests/render/pictures"};
};
