import QtQuick
import QtTest
import Tonequill.Test

// Draws every component in both appearances; the pictures are kept where
// TONEQUILL_PICTURES says.
TestCase {
    id: test
    name: "Gallery"
    when: windowShown
    width: 1180
    height: 900
    visible: true

    Component {
        id: component
        Gallery {}
    }

    function cleanup() {
        Fixture.setDark(false);
    }

    function test_everythingIsDrawnInBothAppearances_data() {
        return [{ tag: "light", isDark: false }, { tag: "dark", isDark: true }];
    }
    function test_everythingIsDrawnInBothAppearances(data) {
        failOnWarning(/.?/);
        Fixture.setDark(data.isDark);
        const gallery = createTemporaryObject(component, test);
        findChild(gallery, "ring").forceActiveFocus(Qt.TabFocusReason);
        wait(400); // the notice comes in
        const image = grabImage(gallery);
        const ground = image.pixel(4, 4);
        verify(data.isDark ? ground.hslLightness < 0.3 : ground.hslLightness > 0.7);
        if (Fixture.pictures !== "")
            image.save(Fixture.pictures + "/gallery-" + data.tag + ".png");
    }
}
