// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

ViewTest {
    id: root

    name: "OnboardingView"
    key: ""

    Component {
        id: component

        OnboardingView {
            app: root.stage.app
            width: root.width
            height: root.height
        }
    }

    function created(properties) {
        const view = show(component, properties);
        tryVerify(() => find("key").activeFocus);
        return view;
    }

    function configured(): bool {
        return stage.app.appState.isAPIKeyConfigured;
    }

    function test_texts_areThose() {
        const view = created();
        compare(texts(view).replace(/<[^>]*>/g, "").replace(/&nbsp;/g, " "), ["Welcome to Pixpress", "Compress PNG, JPEG, WebP, and AVIF images", "using the TinyPNG API — up to 500 free per month.", "TinyPNG API Key", "Each user needs their own free API key. It only takes 30 seconds to get one.", "Paste your API key here…", "Get Started", "Don't have a key yet?", "Get a free API key at tinypng.com →", "Built with ❤️ by ", "The Pixpress authors"].join("\n"));
        compare(symbols(view), "key.fill info.circle");
        compare(find("key").echoMode, TextInput.Password);
        compare(find("key").placeholderText, "Paste your API key here…");
    }

    function test_fonts_areThose() {
        const view = created();
        compare(withText(view, "Welcome to Pixpress").font, Theme.largeTitle);
        compare(withText(view, "Compress PNG, JPEG, WebP, and AVIF images").font, Theme.subheadline);
        compare(withText(view, "TinyPNG API Key").font, Theme.headline);
        compare(withText(view, "Don't have a key yet?").font, Theme.caption);
        compare(withText(view, "Get a free API key at tinypng.com →").font.weight, Font.Medium);
        compare(find("key").font, Theme.bodyMonospaced);
    }

    function test_header_isSpacedAsDrawn() {
        const view = created();
        const logo = shown(view).filter(item => item.sourceSize !== undefined)[0];
        compare(logo.width, 88);
        compare(logo.height, 88);
        compare(logo.mapToItem(view, 44, 0).x, view.width / 2);
        const title = placeOf(withText(view, "Welcome to Pixpress"), view);
        compare(title.y, placeOf(logo, view).bottom + 14);
        const first = placeOf(withText(view, "Compress PNG, JPEG, WebP, and AVIF images"), view);
        const second = placeOf(withText(view, "using the TinyPNG API — up to 500 free per month."), view);
        compare(first.y, title.bottom + 14);
        compare(second.y, first.bottom + 3);
        compare(placeOf(find("card"), view).y, second.bottom + 40);
    }

    function test_logo_isDrawnInItsGradient() {
        const view = created();
        const logo = shown(view).filter(item => item.sourceSize !== undefined)[0];
        tryCompare(logo, "status", Image.Ready);
        const image = painted(logo);
        const low = image.pixel(16, 71);  // near the bottom leading corner
        const high = image.pixel(71, 16); // near the top trailing one
        verify(low.b > 0.5 && low.g < 0.35 && low.r < 0.2, "dark blue below: " + low);
        verify(high.b > 0.8 && high.g > 0.55 && high.r < 0.2, "light blue above: " + high);
        compare(image.pixel(1, 1), Theme.windowBackground); // it is round
    }

    function test_card_isPaddedAndRound() {
        const view = created();
        const card = placeOf(find("card"), view);
        const heading = shown(view).filter(item => item.symbol === "key.fill")[0];
        compare(find("card").radius, 14);
        compare(find("card").color, Theme.contentBackground);
        compare(placeOf(heading, view).x, card.x + 24);
        compare(placeOf(heading, view).y, card.y + 24);
        const link = withText(view, "Get a free API key at tinypng.com →").parent;
        compare(card.bottom, placeOf(link.parent, view).bottom + 24);
        const field = placeOf(find("key"), view);
        const button = placeOf(find("getStarted"), view);
        compare(button.x, field.right + 10);
        compare(button.right, card.right - 24);
        compare(field.y, placeOf(heading.parent, view).bottom + 16);
    }

    function test_footer_standsAboveTheBottom() {
        const view = created();
        const author = withText(view, "The Pixpress authors");
        compare(placeOf(author, view).bottom, view.height - 24);
        const built = shown(view).filter(item => item.credits !== undefined)[0];
        compare(built.credits, "Built with ❤️ by ");
        compare([built.font.pixelSize, built.font.weight, built.color.toString()], [10, Font.Normal, "#92000000"]);
        compare([author.font.pixelSize, author.font.weight, author.color.toString()], [10, Font.Normal, "#a0000000"]);
        compare(placeOf(author, view).x, placeOf(built, view).right);
    }

    function test_cardWidth_isAtMost480_data() {
        return [
            { tag: "wide", width: 1400 },
            { tag: "default", width: 920 },
            { tag: "narrowest", width: 800 }
        ];
    }

    function test_cardWidth_isAtMost480(row) {
        const view = created();
        view.width = row.width;
        tryVerify(() => placeOf(find("card"), view).x === (row.width - 480) / 2);
        compare(find("card").width, 480);
    }

    function test_emptyField_disablesTheButtonAndReturnDoesNothing_data() {
        return [{ tag: "empty", typed: "" }, { tag: "blanks", typed: " \t " }];
    }

    function test_emptyField_disablesTheButtonAndReturnDoesNothing(row) {
        const view = created();
        view.apiKeyInput = row.typed;
        verify(!find("getStarted").enabled);
        keyClick(Qt.Key_Return);
        mouseClick(find("getStarted"));
        verify(!view.isValidating);
        verify(!find("error").visible);
        compare(stage.keys.length, 0);
    }

    function test_typedKey_isCheckedAndSavedByReturn() {
        created();
        type("secret1");
        verify(find("getStarted").enabled);
        keyClick(Qt.Key_Return);
        tryVerify(() => configured());
        compare(stage.storedKey(), "secret1");
        compare(stage.keys, ["secret1"]);
    }

    function test_keyWithBlanksAround_isCheckedAndStoredWithoutThem() {
        stage.acceptOnly("good");
        const view = created();
        view.apiKeyInput = "\t good \t";
        mouseClick(find("getStarted"));
        tryVerify(() => configured());
        compare(stage.storedKey(), "good");
        compare(stage.keys, ["good"]);
    }

    function test_rejectedKey_showsTheMessageAndStoresNothing() {
        stage.acceptOnly("good");
        const view = created();
        view.apiKeyInput = "bad";
        keyClick(Qt.Key_Return);
        const error = found("error");
        compare(texts(error), "Invalid API key — please check and try again.");
        compare(symbols(error), "exclamationmark.triangle.fill");
        compare(error.color, Theme.redText);
        compare(error.font, Theme.caption);
        verify(!configured());
        compare(stage.storedKey(), "");
        verify(!view.isValidating);
        verify(find("getStarted").enabled);
    }

    function test_brokenConnection_showsWhyAndStoresNothing() {
        stage.breakConnections();
        const view = created();
        view.apiKeyInput = "any";
        keyClick(Qt.Key_Return);
        verify(/^Could not validate: .+/.test(texts(found("error"))), texts(find("error")));
        verify(!configured());
        compare(stage.storedKey(), "");
        verify(!view.isValidating);
    }

    function test_anyOtherAnswer_acceptsTheKey_data() {
        return [{ tag: "400", status: 400 }, { tag: "429", status: 429 }, { tag: "500", status: 500 }];
    }

    function test_anyOtherAnswer_acceptsTheKey(row) {
        stage.failWith(row.status, "No.");
        created().apiKeyInput = "any";
        keyClick(Qt.Key_Return);
        tryVerify(() => configured());
        compare(stage.storedKey(), "any");
        verify(!find("error").visible);
    }

    function test_runningCheck_showsTheSpinnerInAButtonOfTheSameWidth() {
        stage.hold();
        const view = created();
        const button = find("getStarted");
        const before = placeOf(button, view);
        view.apiKeyInput = "any";
        mouseClick(button);
        verify(view.isValidating);
        verify(!button.enabled);
        compare(withRole(button, Accessible.ProgressBar).length, 1);
        compare(withRole(button, Accessible.ProgressBar)[0].width, 16);
        compare(withRole(button, Accessible.ProgressBar)[0].color, "#ffffff");
        compare(button.opacity, 1); // the spinner stands out
        compare(texts(button), "");
        compare(placeOf(button, view), before);
        compare(button.width - button.leftPadding - button.rightPadding, 80);
        verify(find("key").enabled);
        verify(!find("key").readOnly);
        stage.release();
        tryVerify(() => configured());
    }

    function test_secondReturn_startsNoSecondCheck() {
        stage.hold();
        const view = created();
        view.apiKeyInput = "any";
        keyClick(Qt.Key_Return);
        keyClick(Qt.Key_Enter);
        mouseClick(find("getStarted"));
        tryCompare(stage, "waiting", 1);
        stage.release();
        tryVerify(() => configured());
        compare(stage.keys, ["any"]);
    }

    function test_secondCheck_clearsTheOldMessageAtItsStart() {
        stage.acceptOnly("good");
        const view = created();
        view.apiKeyInput = "bad";
        keyClick(Qt.Key_Return);
        found("error");
        stage.hold();
        view.apiKeyInput = "good";
        verify(find("error").visible); // an error stays until the next check starts
        keyClick(Qt.Key_Return);
        verify(!find("error").visible);
        stage.release();
        tryVerify(() => configured());
        verify(!find("error").visible);
    }

    function test_link_opensTheSignUpPage() {
        const view = created();
        mouseClick(withText(view, "Get a free API key at tinypng.com →"));
        compare(stage.opened.length, 1);
        compare(stage.opened[0].toString(), "https://tinypng.com/developers");
    }

    function test_tab_reachesFieldButtonAndLink() {
        const view = created();
        view.apiKeyInput = "any";
        compare(tabOrder(), ["Get Started", "Get a free API key at tinypng.com →", "Paste your API key here…"]);
        keyClick(Qt.Key_Backtab);
        keyClick(Qt.Key_Space); // on the link
        compare(stage.opened.length, 1);
    }

    function test_spaceOnTheButton_startsTheCheck() {
        const view = created();
        view.apiKeyInput = "any";
        keyClick(Qt.Key_Tab);
        verify(find("getStarted").activeFocus);
        keyClick(Qt.Key_Space);
        tryVerify(() => configured());
    }

    function test_card_castsASoftShadowDownwards() {
        const view = show(component);
        const card = findChild(view, "card");
        const image = painted(card);
        const darkness = y => Theme.windowBackground.r - image.pixel(card.width / 2, y).r;
        verify(darkness(card.height + 1) > 0.02, darkness(card.height + 1));
        verify(darkness(card.height + 1) > darkness(card.height + 8));
        verify(darkness(card.height + 8) > 0);
        compare(darkness(card.height + 4 + 12 + 2), 0);
        verify(darkness(-1) < darkness(card.height + 1), "it lies lower than the card");
        const beside = x => Theme.windowBackground.r - image.pixel(x, card.height / 2).r;
        verify(beside(card.width + 1) > 0.02, beside(card.width + 1));
        verify(beside(card.width + 11) < 0.01, "it fades out: " + beside(card.width + 11));
    }
}
