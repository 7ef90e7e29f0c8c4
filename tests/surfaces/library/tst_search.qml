pragma ComponentBehavior: Bound
import QtQuick
import QtTest
import Tonequill.Kit
import Tonequill.Window
import Tonequill.Test
import "../Look.js" as Look

TestCase {
    id: test
    name: "Search"
    when: windowShown

    property Main window: null
    property var list: null
    property var field: null

    Component {
        id: component
        Main {
            model: Fixture.model
        }
    }

    function open(names) {
        Fixture.start(names.length);
        names.forEach((name, row) => Fixture.rename(row, name));
        window = component.createObject(test);
        window.requestActivate();
        tryCompare(window, "active", true);
        list = findChild(window.contentItem, "libraryList");
        field = findChild(window.contentItem, "searchField");
        tryVerify(() => list.height > Metrics.row);
    }

    function init() {
        failOnWarning(/.?/);
    }
    function cleanup() {
        window.destroy();
        wait(0);
        Fixture.stop();
    }

    function label(text) {
        return Look.label(window.contentItem, text);
    }

    function row(name) {
        return Look.label(list, name);
    }

    function type(text) {
        for (const character of text)
            keyClick(character);
    }

    function test_typingShrinksTheListAndTheCrossRestoresIt() {
        open(["Dog", "Cat", "Hot Dog"]);
        compare(field.placeholderText, "Search sounds");
        mouseClick(field);
        type("cat");
        tryVerify(() => !row("Dog"));
        tryVerify(() => row("Cat"));
        verify(label("3 sounds · saved on this Mac"));
        mouseClick(field, field.width - 16, field.height / 2);
        compare(field.text, "");
        tryVerify(() => row("Dog"));
    }

    function test_ctrlFGoesToTheBoxAndMarksWhatIsInIt() {
        open(["Dog", "Cat"]);
        keyClick(Qt.Key_F, Qt.ControlModifier);
        verify(field.activeFocus);
        type("cat");
        keyClick(Qt.Key_Down);
        verify(list.activeFocus);
        keyClick(Qt.Key_F, Qt.ControlModifier);
        compare(field.selectedText, "cat");
        type("d");
        compare(field.text, "d");
    }

    function test_ctrlFIsTheLibrarysOnly() {
        open(["Dog"]);
        keyClick(Qt.Key_2, Qt.ControlModifier);
        verify(!field.visible);
        keyClick(Qt.Key_F, Qt.ControlModifier);
        verify(!field.activeFocus);
    }

    function test_escapeEmptiesTheBoxThenLeavesIt() {
        open(["Dog", "Cat"]);
        keyClick(Qt.Key_F, Qt.ControlModifier);
        type("cat");
        keyClick(Qt.Key_Escape);
        compare(field.text, "");
        verify(field.activeFocus);
        tryVerify(() => row("Dog"));
        keyClick(Qt.Key_Escape);
        verify(list.activeFocus);
    }

    function test_downGoesToWhatWasFound_data() {
        return [{ tag: "down", key: Qt.Key_Down }, { tag: "return", key: Qt.Key_Return }];
    }
    function test_downGoesToWhatWasFound(data) {
        open(["Dog", "Cat", "Hot Cat"]);
        keyClick(Qt.Key_F, Qt.ControlModifier);
        type("cat");
        compare(Fixture.open(), "Dog");
        keyClick(data.key);
        compare(Fixture.open(), "Cat");
        verify(Look.ofType(list, "FocusRing"));
        keyClick(Qt.Key_Down);
        compare(Fixture.open(), "Hot Cat");
    }

    function test_keysAndTheMenuActOnTheListAsShown() {
        open(["Dog", "Cat", "Hot Dog", "Hot Cat"]);
        keyClick(Qt.Key_F, Qt.ControlModifier);
        type("cat");
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Down, Qt.ShiftModifier);
        compare(Fixture.selected(), "Cat, Hot Cat");
        keyClick(Qt.Key_Return);
        compare(Fixture.selected(), "Hot Cat");
        keyClick(Qt.Key_A, Qt.ControlModifier);
        compare(Fixture.selected(), "Cat, Hot Cat");
        keyClick(Qt.Key_Menu);
        tryVerify(() => label("Delete 2 Sounds"));
        mouseClick(label("Delete 2 Sounds"));
        verify(label("No Results for “cat”"));
        verify(label("2 sounds · saved on this Mac"));
    }

    function test_nothingFoundSaysSo() {
        open(["Dog"]);
        keyClick(Qt.Key_F, Qt.ControlModifier);
        type("xylophone");
        verify(label("No Results for “xylophone”"));
        verify(label("Check the spelling or try a new search."));
        verify(!label("Your Library Is Empty"));
        keyClick(Qt.Key_Down);
        verify(field.activeFocus, "there is nowhere to go");
        keyClick(Qt.Key_Escape);
        verify(!label("No Results for “xylophone”"));
    }

    function test_whatIsRelatedStandsBelowItsHeading() {
        open(["Scream", "Rain"]);
        Fixture.answerRelated(["creepy", "scream"]);
        const heading = findChild(window.contentItem, "relatedHeading");
        keyClick(Qt.Key_F, Qt.ControlModifier);
        type("spooky");
        verify(!heading.visible);
        verify(label("No Results for “spooky”"));
        Fixture.advance(800);
        tryVerify(() => heading.visible);
        verify(Look.find(heading, item => item !== heading && item.text === "Related to “spooky”: creepy, scream" && item.visible));
        verify(Look.find(heading, item => item.name === "sparkle" && item.visible));
        verify(!label("No Results for “spooky”"));
        tryVerify(() => row("Scream"));
        verify(row("Scream").mapToItem(heading, 0, 0).y >= heading.height, "the list begins below it");
        verify(!row("Rain"));
    }

    function test_theListStartsAtTheBestAndReturnsToTheOpenSound() {
        const names = [];
        for (let i = 0; i < 200; ++i)
            names.push((i % 2 ? "Dog " : "Cat ") + i);
        open(names);
        keyClick(Qt.Key_End);
        tryVerify(() => row("Dog 199"));
        keyClick(Qt.Key_F, Qt.ControlModifier);
        type("dog");
        tryVerify(() => row("Dog 1"));
        field.clear();
        tryVerify(() => row("Dog 199"));
    }

    function test_arabicStaysAtItsPlaceInTheBox() {
        open(["قهقهة قصيرة", "Dog"]);
        field.text = "قهقهة";
        compare(field.effectiveHorizontalAlignment, TextInput.AlignLeft);
        verify(field.cursorRectangle.y >= 6, "its baseline is as deep as a Latin one's");
        tryVerify(() => row("قهقهة قصيرة"));
        tryVerify(() => !row("Dog"));
    }

    function test_anEndlessQueryIsCutWhereItIsShown_data() {
        return [
            { tag: "words", query: "xylophone ".repeat(1000) },
            { tag: "one word", query: "x".repeat(10000) },
            { tag: "emoji", query: "🎧".repeat(5000), finds: true }, // no words: the whole list
            { tag: "marks", query: "\u064E\u0301".repeat(5000), finds: true }
        ];
    }
    function test_anEndlessQueryIsCutWhereItIsShown(data) {
        open(["Dog"]);
        field.text = data.query;
        tryVerify(() => !!row("Dog") === (data.finds === true));
        const title = label("No Results for “" + data.query + "”");
        compare(title === null, data.finds === true);
        if (title) {
            compare(title.lineCount, 3);
            verify(title.mapToItem(list, 0, 0).x >= 0);
        }
    }
}
