pragma ComponentBehavior: Bound
import QtQuick
import QtTest
import Tonequill.Kit
import Tonequill.Window
import Tonequill.Test
import "../Look.js" as Look

TestCase {
    id: test
    name: "Editor"
    when: windowShown

    property Main window: null
    property var stage: null

    Component {
        id: component
        Main {
            model: Fixture.model
        }
    }

    function init() {
        failOnWarning(/.?/);
        Fixture.startEditing();
        show();
    }
    function show() {
        window = component.createObject(test);
        window.requestActivate();
        tryCompare(window, "active", true);
        stage = item("well").stage;
        tryVerify(() => stage.width > 0);
    }
    function cleanup() {
        window.destroy();
        wait(0);
        Fixture.stop();
    }

    function item(name) {
        return findChild(window.contentItem, name);
    }
    function chip(text) {
        return Look.find(window.contentItem, each => each.text === text && each.isPicked !== undefined);
    }
    // The place on the wave of a time while the whole is shown.
    function at(seconds) {
        return Math.round(seconds / 10 * stage.width);
    }
    function slider(name) {
        return Look.find(item(name), each => each.handle !== undefined);
    }
    function hasText(text) {
        return !!Look.label(window.contentItem, text);
    }

    function test_theChipsTellThePartsAndAreChosen() {
        verify(hasText("Found in this file"));
        verify(hasText("⌘-click to pick several"));
        compare(chip("Best match · Slam").isPicked, true);
        compare(chip("Best match · Slam").detail, "1.00s");
        compare(chip("Option 2").detail, "1.50s");
        compare(chip("Whole sound").detail, "9.00s");
        compare(chip("Whole file").detail, "10.00s");
        mouseClick(chip("Option 2"));
        compare(Fixture.editor(), "6.00-7.50 marked 1");
        compare(chip("Best match · Slam").isPicked, false);
        mouseClick(chip("Best match · Slam"), 10, 10, Qt.LeftButton, Qt.ControlModifier);
        compare(Fixture.editor(), "3.00-4.00 marked 2");
        mouseClick(chip("Option 2"));
        compare(Fixture.editor(), "6.00-7.50 marked 1");
        mouseClick(chip("Whole file"));
        compare(Fixture.editor(), "0.00-10.00 marked 0");
    }

    function test_theChipsAreChosenWithTheKeys() {
        chip("Option 2").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Space, Qt.ControlModifier);
        compare(Fixture.editor(), "6.00-7.50 marked 2");
        keyClick(Qt.Key_Return);
        compare(Fixture.editor(), "6.00-7.50 marked 1");
    }

    function test_theLineTellsWhatIsHeard() {
        compare(item("headline").text, "Listening…");
        Fixture.answerHearing();
        tryVerify(() => item("headline").text.includes("slam (92% sure)"));
        verify(item("summary").text !== "");
    }

    function test_spacePlaysAndStopsWhereverTheFocusIs() {
        keyClick(Qt.Key_Space);
        compare(Fixture.editor(), "3.00-4.00 marked 1 playing");
        item("saveButton").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Space, Qt.ShiftModifier);
        compare(Fixture.editor(), "3.00-4.00 marked 1");
        for (const held of [Qt.ControlModifier, Qt.AltModifier, Qt.MetaModifier]) {
            item("libraryList").forceActiveFocus();
            keyClick(Qt.Key_Space, held);
            compare(Fixture.editor(), "3.00-4.00 marked 1");
        }
    }

    function test_playIsThereBeforeTheAnalysisEndsAndTheTimeRuns() {
        window.destroy();
        wait(0);
        Fixture.startLoading();
        show();
        verify(window.model.sound.isLoading);
        compare(item("place").text, "0:00.000");
        verify(item("playButton").enabled);
        mouseClick(item("playButton"));
        verify(window.model.sound.playback.isPlaying);
        Fixture.play(2.5);
        compare(item("place").text, "0:02.500");
        verify(stage.hasPlayhead);
        const line = Look.find(stage, each => each.color === Theme.playhead && each.visible && each.height === stage.height);
        verify(line, "the playhead runs where the wave will be");
        fuzzyCompare(line.x + line.width / 2, at(2.5), 1);
        mouseClick(item("playButton"));
        compare(item("place").text, "0:00.000");
    }

    function test_theBracketsPutTheEndsOfTheRangeAndLLoops() {
        mouseClick(stage, at(3.5), 60);
        keyClick("["); // a letter of the list, which has the keyboard
        compare(Fixture.editor(), "3.00-4.00 marked 1 cursor 3.50");
        item("saveButton").forceActiveFocus(Qt.TabFocusReason);
        keyClick("[");
        checkRange(3.5, 4);
        mouseClick(stage, at(3.75), 60);
        keyClick("]");
        checkRange(3.5, 3.75);
        keyClick("l");
        verify(window.model.sound.playback.loop);
        keyClick("l");
        verify(!window.model.sound.playback.loop);
        keyClick("l", Qt.ControlModifier);
        verify(!window.model.sound.playback.loop);
        mouseClick(item("nameField"));
        keyClick(Qt.Key_End);
        keyClick("]");
        compare(item("nameField").text, "Door Slam]");
        checkRange(3.5, 3.75);
    }

    function test_aDragAcrossTheWaveSetsTheRange() {
        mousePress(stage, at(5), 60);
        mouseMove(stage, at(5) + 2, 60);
        compare(Fixture.editor(), "3.00-4.00 marked 1"); // it may still be a click
        mouseMove(stage, at(6), 60);
        mouseMove(stage, at(8), 60);
        checkRange(5, 8);
        compare(chip("Best match · Slam").isPicked, false);
        mouseMove(stage, at(4.5), 60);
        mouseRelease(stage, at(4.5), 60);
        checkRange(4.5, 5);
        compare(window.model.sound.playback.end - window.model.sound.playback.start > 0.4, true);
        verify(!Fixture.editor().includes("cursor"), Fixture.editor());
    }

    function test_theWaveComesAlongWithASweepBeyondTheView() {
        mouseClick(item("zoomSelectionButton"));
        const scroll = stage.scrollX;
        const from = stage.startSeconds + 600 / stage.pixelsPerSecond;
        mousePress(stage, 600, 60);
        mouseMove(stage, stage.width + 40, 60);
        mouseMove(stage, stage.width + 80, 60);
        mouseRelease(stage, stage.width + 80, 60);
        compare(stage.scrollX, scroll + 30);
        fuzzyCompare(window.model.sound.playback.start, from, 0.01);
        verify(window.model.sound.playback.end > 4.1);
    }

    function test_aPinchZoomsAtThePointer() {
        const before = stage.startSeconds + 400 / stage.pixelsPerSecond;
        const touch = touchEvent(stage);
        touch.press(0, stage, 350, 60).press(1, stage, 450, 60).commit();
        for (let i = 1; i <= 100; ++i)
            touch.move(0, stage, 350 - i, 60).move(1, stage, 450 + i, 60).commit();
        touch.release(0, stage, 250, 60).release(1, stage, 550, 60).commit();
        verify(stage.zoom > 2 && stage.zoom <= 3.01, stage.zoom); // the first steps begin it
        fuzzyCompare(stage.startSeconds + 400 / stage.pixelsPerSecond, before, 0.05);
        compare(Fixture.editor(), "3.00-4.00 marked 1"); // it is no drag and no click
    }

    function test_aSlowPinchZoomsAsFarAsAQuickOne() {
        stage.beginPinch();
        for (let i = 1; i <= 5000; ++i)
            stage.pinch(1 + i * 0.0002, 400);
        fuzzyCompare(stage.zoom, 2, 0.01);
        stage.beginPinch();
        stage.pinch(0.1, 400);
        compare(stage.zoom, 1);
        compare(stage.scrollX, 0);
        stage.pinch(0.11, 400);
        fuzzyCompare(stage.zoom, 1.1, 1e-6, "the way back begins at once");
        stage.pinch(0, 400);
        stage.pinch(-1, 400);
        fuzzyCompare(stage.zoom, 1.1, 1e-6);
    }

    function test_theZoomedWaveHasAScrollBar() {
        const bar = item("waveScrollBar");
        verify(!bar.visible);
        for (let i = 0; i < 8; ++i)
            mouseWheel(stage, 200, 60, 0, 120, Qt.NoButton, Qt.ControlModifier);
        verify(bar.visible);
        compare(bar.height, Metrics.spaceS);
        verify(bar.contentItem.height >= Metrics.sliderTrack);
        tryVerify(() => bar.contentItem.opacity > 0.2);
        const ribbon = Look.find(stage, each => each.marked !== undefined && each.visible);
        verify(ribbon.y + ribbon.height <= bar.y, "the parts stay in sight");
        const scroll = stage.scrollX;
        const y = bar.height / 2;
        const x = bar.contentItem.x + bar.contentItem.width / 2;
        mousePress(bar, x, y);
        mouseMove(bar, x + 50, y);
        mouseMove(bar, x + 100, y);
        mouseRelease(bar, x + 100, y);
        verify(stage.scrollX > scroll + 300, stage.scrollX - scroll);
        compare(Fixture.editor(), "3.00-4.00 marked 1");
    }

    function test_noLineRunsThroughTheTimeUnderThePointer() {
        mouseClick(stage, at(8), 60);
        mouseMove(stage, at(8), 61);
        const label = Look.find(stage, each => each.toString().startsWith("HoverTime") && each.visible);
        verify(label);
        const image = grabImage(window.contentItem);
        const origin = stage.mapToItem(null, 0, 0);
        const x = Math.round(origin.x + stage.cursorX);
        const hasLine = y => Math.abs(image.red(x, origin.y + y) - image.red(x - 3, origin.y + y)) > 8;
        verify(!hasLine(label.y + 2)); // over its digits
        verify(hasLine(stage.height - 40), "it is the cursor's place");
    }

    function test_theWheelOverTheChipsStaysAtTheirEnds() {
        window.width = 900;
        const chips = item("chips");
        tryVerify(() => chips.width < 700 && chips.lastX > 0);
        for (let i = 0; i < 40; ++i)
            mouseWheel(chips, 60, 20, 0, -120);
        compare(chips.contentX, chips.lastX);
        for (let i = 0; i < 80; ++i)
            mouseWheel(chips, 60, 20, 0, 120);
        compare(chips.contentX, 0);
        mouseWheel(chips, 60, 20, 0, -30);
        compare(chips.contentX, Math.min(15, chips.lastX));
        window.width = 1180;
        tryVerify(() => chips.contentX <= chips.lastX);
    }

    function test_theVoicesLookTheSameAfterANarrowWindow() {
        const words = () => Look.label(chip("Robot"), "Robot").mapToItem(chip("Robot"), 0, 0).x;
        const before = words();
        verify(before < 60);
        window.width = 900;
        tryVerify(() => chip("Robot").isCompact);
        window.width = 1180;
        tryVerify(() => !chip("Robot").isCompact);
        tryVerify(() => words() === before, 1000, words() + " was " + before);
    }

    function test_noRingIsCut() {
        const reach = Metrics.focusGap + Metrics.focus;
        const plus = item("addTagButton");
        const tags = item("tags");
        const at = plus.mapToItem(tags, -reach, -reach);
        const end = plus.mapToItem(tags, plus.width + reach, plus.height + reach);
        verify(at.y >= 0 && end.y <= tags.height && at.x >= 0 && end.x <= tags.width, [at, end, tags.width, tags.height]);
        mouseClick(chip("Whole file"));
        for (const name of ["startHandle", "endHandle"]) {
            const handle = item(name);
            handle.forceActiveFocus(Qt.TabFocusReason);
            const ring = Look.ofType(handle, "FocusRing");
            const left = ring.mapToItem(stage, 0, 0).x;
            verify(left >= 0 && left + ring.width <= stage.width, name + " " + left);
        }
    }

    function test_spaceDoesNothingInAnotherSection() {
        window.model.section = WindowModel.Studio;
        keyClick(Qt.Key_Space);
        compare(Fixture.editor(), "3.00-4.00 marked 1");
    }

    function test_spaceInTheNameFieldTypesABlank() {
        const field = item("nameField");
        mouseClick(field);
        verify(field.activeFocus);
        keyClick(Qt.Key_End);
        keyClick(Qt.Key_Space);
        keyClick(Qt.Key_2);
        compare(field.text, "Door Slam 2");
        compare(Fixture.editor(), "3.00-4.00 marked 1");
        keyClick(Qt.Key_Return);
        verify(!field.activeFocus);
        compare(Fixture.record(), "Door Slam 2: door, slam");
    }

    function test_escapePutsTheNameBack() {
        const field = item("nameField");
        mouseClick(field);
        keyClick(Qt.Key_A, Qt.ControlModifier);
        keyClick(Qt.Key_X);
        keyClick(Qt.Key_Escape);
        verify(!field.activeFocus);
        compare(field.text, "Door Slam");
        compare(Fixture.record(), "Door Slam: door, slam");
    }

    function test_aClickElsewhereEndsTheEditing() {
        const field = item("nameField");
        mouseClick(field);
        keyClick(Qt.Key_A, Qt.ControlModifier);
        keyClick(Qt.Key_X);
        mouseClick(stage, at(8), 40);
        verify(!field.activeFocus);
        compare(Fixture.record(), "x: door, slam");
        compare(Fixture.editor(), "3.00-4.00 marked 1 cursor 8.00"); // and the click is passed on
    }

    function test_tagsAreAddedAndTakenAway() {
        mouseClick(item("addTagButton"));
        verify(item("tagField").activeFocus);
        keyClick(Qt.Key_W);
        keyClick(Qt.Key_Return);
        compare(Fixture.record(), "Door Slam: door, slam, w");
        mouseClick(item("addTagButton"));
        keyClick(Qt.Key_W);
        keyClick(Qt.Key_Escape);
        compare(Fixture.record(), "Door Slam: door, slam, w");
        const tag = text => Look.find(window.contentItem, each => each.text === text && each.removed !== undefined);
        tryVerify(() => tag("door").x < tag("slam").x && tag("slam").x < tag("w").x); // they are laid out
        mouseClick(tag("door"), 10, 16);
        compare(Fixture.record(), "Door Slam: door, slam, w"); // its word does nothing
        mouseClick(findChild(tag("door"), "tagCross"));
        compare(Fixture.record(), "Door Slam: slam, w");
        tag("slam").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Delete);
        compare(Fixture.record(), "Door Slam: w");
    }

    function test_aCommaEndsATagAndTheNextIsTyped() {
        mouseClick(item("addTagButton"));
        for (const letter of ["w", ",", " ", "x"])
            keyClick(letter);
        compare(Fixture.record(), "Door Slam: door, slam, w");
        verify(item("tagField").activeFocus);
        compare(item("tagField").text, " x");
        keyClick(",");
        keyClick(Qt.Key_Return);
        compare(Fixture.record(), "Door Slam: door, slam, w, x");
    }

    function test_aClickOnTheWaveMovesTheCursorAndNotTheRange() {
        mouseClick(stage, at(8), 60);
        compare(Fixture.editor(), "3.00-4.00 marked 1 cursor 8.00");
        compare(Math.round(stage.cursorX), at(8));
    }

    function checkRange(start, end) {
        const pixel = 10 / stage.width;
        fuzzyCompare(window.model.sound.playback.start, start, pixel);
        fuzzyCompare(window.model.sound.playback.end, end, pixel);
    }

    function test_theHandlesAreDragged() {
        mousePress(stage, at(3), 60);
        mouseMove(stage, at(2.5), 60);
        mouseMove(stage, at(2), 60);
        checkRange(2, 4);
        compare(chip("Best match · Slam").isPicked, false);
        mouseMove(stage, at(9), 60); // not over the other one
        compare(Fixture.editor(), "3.97-4.00 marked 0");
        mouseMove(stage, at(-3), 60);
        mouseRelease(stage, at(-3), 60);
        compare(Fixture.editor(), "0.00-4.00 marked 0");
        mousePress(stage, at(4) + 12, 60); // beside the line: it doesn't jump to the pointer
        mouseMove(stage, at(6) + 12, 60);
        mouseRelease(stage, at(6) + 12, 60);
        checkRange(0, 6);
    }

    function test_theWaveComesAlongWithAHandleDraggedBeyondTheView() {
        mouseClick(item("zoomSelectionButton"));
        const scroll = stage.scrollX;
        mousePress(stage, stage.endX, 60);
        mouseMove(stage, stage.width + 40, 60);
        mouseMove(stage, stage.width + 80, 60);
        mouseRelease(stage, stage.width + 80, 60);
        compare(stage.scrollX, scroll + 30);
        verify(window.model.sound.playback.end > 4.1);
    }

    function test_aPartThatIsChosenComesIntoView() {
        mouseClick(item("zoomSelectionButton"));
        mouseClick(chip("Option 2"));
        verify(stage.startX < stage.width && stage.endX > 0);
        fuzzyCompare((stage.startX + stage.endX) / 2, stage.width / 2, 1);
    }

    function test_theHandlesAreMovedWithTheKeys() {
        const handle = item("startHandle");
        handle.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Left);
        compare(Fixture.editor(), "2.99-4.00 marked 0");
        keyClick(Qt.Key_Right, Qt.ShiftModifier);
        compare(Fixture.editor(), "3.09-4.00 marked 0");
        item("endHandle").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Right);
        compare(Fixture.editor(), "3.09-4.01 marked 0");
        compare(Fixture.spoken(item("endHandle")), "Slider: End, 0:04.010");
    }

    function test_theZoomButtons() {
        mouseClick(item("zoomInButton"));
        fuzzyCompare(stage.zoom, 1.6, 1e-9);
        mouseClick(item("zoomOutButton"));
        fuzzyCompare(stage.zoom, 1, 1e-9);
        verify(!item("zoomOutButton").enabled);
        mouseClick(item("zoomSelectionButton"));
        fuzzyCompare(stage.zoom, 8, 1e-9);
        fuzzyCompare((stage.startX + stage.endX) / 2, stage.width / 2, 1);
        mouseClick(item("showWholeButton"));
        compare(stage.zoom, 1);
        compare(stage.scrollX, 0);
        for (const name of ["zoomInButton", "zoomOutButton", "zoomSelectionButton", "showWholeButton"])
            verify(["Zoom in (or pinch)", "Zoom out", "Zoom to the selected part", "Show the whole sound"].includes(item(name).text));
    }

    function test_theZoomHasKeys() {
        keyClick(Qt.Key_Plus, Qt.ControlModifier);
        fuzzyCompare(stage.zoom, 1.6, 1e-9);
        keyClick(Qt.Key_9, Qt.ControlModifier);
        fuzzyCompare(stage.zoom, 8, 1e-9);
        keyClick(Qt.Key_Minus, Qt.ControlModifier);
        fuzzyCompare(stage.zoom, 5, 1e-9);
        keyClick(Qt.Key_0, Qt.ControlModifier);
        compare(stage.zoom, 1);
    }

    function test_theWheelScrollsAndWithControlZoomsAtThePointer() {
        const thumb = () => Look.find(stage, each => each.orientation === Qt.Horizontal && each.visible && each.minimumSize !== undefined);
        verify(!thumb());
        const before = stage.startSeconds + 200 / stage.pixelsPerSecond;
        for (let i = 0; i < 8; ++i)
            mouseWheel(stage, 200, 60, 0, 120, Qt.NoButton, Qt.ControlModifier);
        fuzzyCompare(stage.zoom, 4, 1e-6);
        fuzzyCompare(stage.startSeconds + 200 / stage.pixelsPerSecond, before, 0.01);
        verify(thumb());
        const scroll = stage.scrollX;
        mouseWheel(stage, 200, 60, 0, -120);
        compare(stage.scrollX, scroll + 60);
        mouseWheel(stage, 200, 60, 120, 0);
        compare(stage.scrollX, scroll);
        for (let i = 0; i < 60; ++i)
            mouseWheel(stage, 200, 60, 0, 120, Qt.NoButton, Qt.ControlModifier);
        compare(stage.zoom, 64);
        for (let i = 0; i < 60; ++i)
            mouseWheel(stage, 200, 60, 0, -120, Qt.NoButton, Qt.ControlModifier);
        compare(stage.zoom, 1);
    }

    function test_theViewFollowsThePlayheadByPages() {
        mouseClick(item("zoomSelectionButton"));
        mouseClick(item("wholeFileChip"));
        const before = stage.scrollX;
        mouseClick(item("playButton"));
        Fixture.play(3.2);
        compare(stage.scrollX, before);
        verify(stage.hasPlayhead);
        Fixture.play(6);
        fuzzyCompare(stage.playheadX, 0.15 * stage.width, 1.5);
        const page = stage.scrollX;
        Fixture.play(6.1);
        compare(stage.scrollX, page);
    }

    function test_theWaveIsNotDrawnAnewWhileItPlays() {
        const wave = item("wave");
        mouseClick(item("playButton"));
        let redrawn = 0;
        wave.changed.connect(() => ++redrawn);
        for (let i = 1; i <= 20; ++i)
            Fixture.play(3 + i * 0.04);
        compare(redrawn, 0);
        verify(stage.hasPlayhead);
    }

    function test_loopIsSwitchedByPointerAndKey() {
        mouseClick(item("loopButton"));
        compare(Fixture.editor(), "3.00-4.00 marked 1 loop");
        item("loopButton").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Return);
        compare(Fixture.editor(), "3.00-4.00 marked 1");
    }

    function test_theSlidersWorkWithTheKeysAndADoubleClickResets() {
        slider("gainSlider").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Right);
        keyClick(Qt.Key_Right);
        compare(item("gainSlider").valueText, "+2 dB");
        compare(window.model.sound.effects.gain, 2);
        verify(!window.model.sound.effects.isNeutral);
        mouseDoubleClickSequence(slider("gainSlider"), slider("gainSlider").width / 4, 16);
        tryCompare(window.model.sound.effects, "gain", 0);
        verify(!item("gainSlider").isChanged);
        slider("speedSlider").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Left);
        compare(window.model.sound.effects.speedText, "0.93×");
        keyClick(Qt.Key_Delete);
        compare(window.model.sound.effects.speedText, "1×");
    }

    function test_thePresetsAndTheVoicesAndReset() {
        mouseClick(Look.label(item("presets"), "2×"));
        compare(window.model.sound.effects.speedText, "2×");
        compare(window.model.sound.effects.preset, 4);
        mouseClick(chip("Robot"));
        compare(item("voiceHint").text, "Metallic and buzzing.");
        compare(chip("Robot").isPicked, true);
        compare(chip("Natural").isPicked, false);
        mouseClick(item("reverseToggle"));
        verify(Fixture.effects().includes("\"reverse\":true"));
        mouseClick(item("resetButton"));
        verify(window.model.sound.effects.isNeutral);
        compare(item("reverseToggle").checked, false);
        verify(!item("resetButton").enabled);
    }

    function test_effectsAreRenderedBeforeTheyAreHeard() {
        mouseClick(chip("Robot"));
        keyClick(Qt.Key_Space);
        compare(Fixture.editor(), "3.00-4.00 marked 1 rendering");
        verify(Look.ofType(item("playButton"), "Spinner"));
        verify(!item("failure").visible);
        Fixture.failEffects();
        tryVerify(() => item("failure").visible);
        compare(item("failure").text, "Couldn't play this with the effects.");
        verify(item("well").visible);
    }

    function test_aNarrowWindowKeepsTheIconsAndTheWaveGivesUpHeight() {
        const wide = item("saveButton").width;
        const tall = item("well").height;
        window.width = 900;
        window.height = 600;
        tryCompare(item("saveButton"), "width", Metrics.button);
        verify(wide > 100);
        verify(chip("Megaphone").isCompact);
        verify(item("well").height < tall);
        verify(item("well").height >= Metrics.waveMinHeight);
        compare(item("addButton").text, "Add to Library");
        verify(item("addButton").width > 100);
    }

    function test_everythingIsReachedByTheTabKey() {
        compare(Fixture.flaws(window), []);
        const stops = Fixture.tabStops(window);
        for (const stop of ["EditableText: Name of the sound", "Button: Save to Desktop", "Button: Add to Library", "Button: door",
                "Button: Add a tag", "Slider: Start, 0:03.000", "Slider: End, 0:04.000", "Button: Play", "CheckBox: Loop",
                "Button: Show the whole sound", "Button: Best match · Slam, 1.00s", "CheckBox: Reverse",
                "Button: Natural", "Slider: Speed, 1×", "Slider: Reverb, 0%", "Button: Drag"])
            verify(stops.some(each => each.startsWith(stop)), stop + " of " + stops.join("; "));
    }

    function test_theArrowsGoThroughTheChips() {
        chip("Best match · Slam").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Left);
        verify(chip("Best match · Slam").visualFocus);
        keyClick(Qt.Key_Right);
        verify(chip("Option 2").visualFocus);
        compare(Fixture.editor(), "3.00-4.00 marked 1"); // it is only looked at
        const next = () => window.activeFocusItem;
        keyClick(Qt.Key_Tab);
        verify(next().isPicked === undefined, "the Tab key passes them in one step");
        keyClick(Qt.Key_Backtab);
        verify(chip("Option 2").visualFocus, "and comes back to where one was");
        keyClick(Qt.Key_Right);
        keyClick(Qt.Key_Right);
        verify(chip("Whole file").visualFocus);
        keyClick(Qt.Key_Return);
        compare(Fixture.editor(), "0.00-10.00 marked 0");
        chip("Natural").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Right);
        verify(chip("Man").visualFocus);
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Left);
        verify(chip("Child").visualFocus);
        keyClick(Qt.Key_Up);
        verify(chip("Natural").visualFocus);
        keyClick(Qt.Key_Up);
        verify(chip("Natural").visualFocus);
    }

    function test_theChipsKeepTheirPlacesWhenTheLabelsCome() {
        window.destroy();
        wait(0);
        Fixture.startLoading();
        Fixture.analyse();
        show();
        const places = () => ["Best match", "Option 2"].map(name => {
            const one = Look.find(item("chips"), each => each.isPicked !== undefined && each.text.startsWith(name));
            return [one.mapToItem(item("chips"), 0, 0).x, one.width].join();
        }).join("; ");
        tryVerify(() => chip("Option 2"));
        const before = places();
        verify(!chip("Best match · Slam"));
        Fixture.label();
        tryVerify(() => chip("Best match · Slam"));
        wait(0);
        compare(places(), before);
    }

    function test_theSlidersHaveEveryKeyAndTheWheel() {
        slider("gainSlider").forceActiveFocus(Qt.TabFocusReason);
        const gain = () => window.model.sound.effects.gain;
        keyClick(Qt.Key_PageUp);
        compare(gain(), 10);
        keyClick(Qt.Key_End);
        compare(gain(), 12);
        keyClick(Qt.Key_Home);
        compare(gain(), -24);
        keyClick(Qt.Key_PageDown);
        compare(gain(), -24);
        mouseWheel(slider("gainSlider"), 20, 10, 0, 120);
        compare(gain(), -23);
        compare(item("gainSlider").valueText, "-23 dB");
        slider("speedSlider").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_PageUp);
        compare(window.model.sound.effects.speedText, "1.3×");
        const handle = item("endHandle");
        handle.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_PageUp);
        compare(Fixture.editor(), "3.00-5.00 marked 0");
        keyClick(Qt.Key_End);
        compare(Fixture.editor(), "3.00-10.00 marked 0");
        item("startHandle").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Home);
        compare(Fixture.editor(), "0.00-10.00 marked 0");
    }

    // The file is shorter than what the test tells of it.
    function chooseWhatIsThere() {
        mouseClick(stage, at(0.2), 60);
        item("loopButton").forceActiveFocus(Qt.TabFocusReason);
        keyClick("]");
        checkRange(0, 0.2);
    }

    function test_ctrlSSavesAndCtrlReturnAddsWhatWasTyped() {
        chooseWhatIsThere();
        mouseClick(item("nameField"));
        keyClick(Qt.Key_A, Qt.ControlModifier);
        keyClick("x");
        keyClick(Qt.Key_S, Qt.ControlModifier);
        compare(Fixture.record(), "x: door, slam");
        tryVerify(() => !window.model.soundActions.isWorking);
        verify(window.model.noticeText.startsWith("Saved “x"), window.model.noticeText);
        keyClick(Qt.Key_Return, Qt.ControlModifier);
        verify(window.model.soundActions.isAdding);
        tryVerify(() => !window.model.soundActions.isWorking);
        verify(window.model.noticeText.startsWith("Added “x"), window.model.noticeText);
    }

    function test_f2AndTheMenuGoToTheName() {
        keyClick(Qt.Key_F2);
        verify(item("nameField").activeFocus);
        compare(item("nameField").selectedText, "Door Slam");
        keyClick("y");
        keyClick(Qt.Key_Return);
        compare(Fixture.record(), "y: door, slam");
        mouseClick(item("libraryList"), 100, 20, Qt.RightButton);
        tryVerify(() => hasText("Rename"));
        mouseClick(Look.label(window.contentItem, "Rename"));
        tryVerify(() => !hasText("Rename"));
        tryVerify(() => item("nameField").activeFocus);
        compare(item("nameField").selectedText, "y");
    }

    function test_theDragButtonCopiesForTheKeys() {
        chooseWhatIsThere();
        item("dragButton").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Return);
        compare(window.model.noticeText, "Copied “Door Slam”. Paste it into another program.");
        verify(Fixture.clipboard().includes(".wav"), Fixture.clipboard());
        Fixture.say("", false);
        verify(Fixture.press(item("dragButton")));
        compare(window.model.noticeText, "Copied “Door Slam”. Paste it into another program.");
    }

    function test_whatIsToldIsInTheTree() {
        Fixture.answerHearing();
        tryVerify(() => item("headline").text.includes("slam"));
        compare(Fixture.spoken(item("headline")), "StaticText: " + item("headline").text);
        compare(Fixture.spoken(item("summary")), "StaticText: " + item("summary").text);
        compare(Fixture.spoken(item("duration")), "StaticText: Length 10.00 s");
        compare(Fixture.valueOf(slider("gainSlider")), "0 of -24 to 12");
        compare(Fixture.valueOf(slider("reverbSlider")), "0 of 0 to 1");
        compare(Fixture.valueOf(item("endHandle")), "4 of 0 to 10");
        Fixture.setValue(slider("gainSlider"), -3);
        compare(window.model.sound.effects.gain, -3);
        compare(item("gainSlider").valueText, "-3 dB");
        Fixture.setValue(item("endHandle"), 6);
        compare(Fixture.editor(), "3.00-6.00 marked 0");
        compare(Fixture.valueOf(item("endHandle")), "6 of 0 to 10");
    }

    function test_aNameIsSuggestedAndUsed() {
        const button = item("smartNameButton");
        compare(Fixture.spoken(button), "Button: Suggest a name");
        mouseClick(button);
        compare(Fixture.spoken(button), "Button: Thinking…");
        verify(!item("dismissName").visible);
        Fixture.answerHearing();
        tryVerify(() => hasText("Use"));
        compare(Fixture.spoken(button), "Button: Use the name Slam");
        compare(Fixture.record(), "Door Slam: door, slam");
        compare(window.model.sound.suggestedTags, ""); // it has them
        mouseClick(button);
        compare(Fixture.record(), "Slam: door, slam");
        compare(item("nameField").text, "Slam");
        verify(!hasText("Use"));
        compare(Fixture.spoken(button), "Button: Suggest a name");
    }

    function test_aSuggestedNameIsAskedForAndDismissedWithTheKeys() {
        const button = item("smartNameButton");
        button.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Return);
        Fixture.answerHearing();
        tryVerify(() => hasText("Use"));
        verify(button.activeFocus);
        compare(Fixture.flaws(window).join("; "), "");
        keyClick(Qt.Key_Escape);
        verify(!hasText("Use"));
        verify(button.activeFocus);
        compare(Fixture.record(), "Door Slam: door, slam");
        keyClick(Qt.Key_Return);
        Fixture.answerHearing();
        tryVerify(() => hasText("Use"));
        mouseClick(item("dismissName"));
        verify(!hasText("Use"));
        verify(button.activeFocus);
        compare(Fixture.record(), "Door Slam: door, slam");
    }

    function test_withoutAnIdeaThereIsNothingToUse() {
        const button = item("smartNameButton");
        mouseClick(button);
        Fixture.answerHearingWithNothing();
        tryVerify(() => hasText("Not sure what this is"));
        verify(!hasText("Use"));
        mouseClick(item("dismissName"));
        tryVerify(() => !hasText("Not sure what this is"));
        compare(Fixture.record(), "Door Slam: door, slam");
    }

    function test_aLongNameLeavesRoomForTheSuggestion_data() {
        return [{ tag: "wide", width: 1180 }, { tag: "narrow", width: 900 }];
    }
    function test_aLongNameLeavesRoomForTheSuggestion(data) {
        window.width = data.width;
        Fixture.rename(0, "The very long name of a door that is slammed shut again and again in an old house");
        mouseClick(item("smartNameButton"));
        Fixture.answerHearing();
        tryVerify(() => hasText("Use"));
        const name = item("nameField");
        const smart = item("smartName");
        tryVerify(() => smart.x >= name.x + name.width);
        tryVerify(() => smart.x + smart.width < item("dragButton").parent.x);
        verify(smart.width >= 100, smart.width);
        verify(name.width >= 100, name.width);
    }

    function test_namingFromTheMenuIsShownInTheRow() {
        Fixture.rename(0, "IMG_0042");
        const list = item("libraryList");
        list.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Menu);
        tryVerify(() => hasText("Smart Name"));
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Return);
        tryVerify(() => hasText("Naming 1"));
        verify(hasText("Listening…"));
        Fixture.answerHearing();
        tryVerify(() => hasText("Named it and added tags."));
        verify(!hasText("Naming 1"));
        compare(Fixture.record(), "Slam: door, slam");
        tryVerify(() => !hasText("Smart Name"));
        list.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Menu);
        tryVerify(() => hasText("Smart Name"));
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Return);
        tryVerify(() => hasText("These sounds already have names you chose, so I left them alone."));
    }
}
