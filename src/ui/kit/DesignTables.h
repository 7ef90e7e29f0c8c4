#pragma once

// The names of all that tokens.json holds, once: the types that parse, keep and
// show them are written over these tables.

// clang-format off

// Every single colour of a theme, by the name it has in tokens.json.
#define TONEQUILL_COLORS(X) \
    X(panel) X(card) X(well) X(raised) X(popover) X(toolbar) X(toolbarButton) X(toolbarButtonHover) \
    X(rowHover) X(rowPressed) X(rowSelected) X(rowSelectedInactive) X(fieldFill) X(buttonFill) \
    X(buttonHover) X(buttonPressed) X(hairline) X(border) X(scrim) X(textPrimary) X(textSecondary) \
    X(textTertiary) X(textDisabled) X(accent) X(accentText) X(accentHover) X(accentPressed) X(accentInk) \
    X(accentSoft) X(accentSoftHover) X(accentSoftText) X(focusRing) X(control) X(thumb) X(sliderTrack) \
    X(sliderFill) X(waveRange) X(waveOutside) X(waveOutsideRms) X(waveUnplayed) X(waveUnplayedRms) \
    X(wavePlayedStart) X(wavePlayedEnd) X(handle) X(handleGrip) X(playhead) X(cursor) X(skimmer) X(snapLine) \
    X(danger) X(warning) X(success) X(dangerSoft) X(warningSoft) X(successSoft) X(dangerText) X(warningText) \
    X(successText) X(meterTrack) X(meterLow) X(meterMid) X(meterHigh) X(topicStart) X(topicEnd) X(lane)

// Every measure: its name in QML, its group and its key in tokens.json. Pixels
// at scale 1; milliseconds for motion; a share of 1 for opacity.
#define TONEQUILL_METRICS(X) \
    X(spaceXs, spacing, xs) X(spaceS, spacing, s) X(spaceM, spacing, m) X(spaceL, spacing, l) \
    X(spaceXl, spacing, xl) X(radiusControl, radius, control) X(radiusCard, radius, card) \
    X(radiusChip, radius, chip) X(radiusInner, radius, inner) X(radiusPill, radius, pill) \
    X(radiusRegion, radius, region) X(radiusThumbnail, radius, thumbnail) X(toolbar, size, toolbar) \
    X(row, size, row) X(button, size, button) X(buttonSmall, size, buttonSmall) \
    X(hitTarget, size, hitTarget) X(field, size, field) X(chip, size, chip) X(sliderRow, size, sliderRow) \
    X(switchWidth, size, switchWidth) X(switchHeight, size, switchHeight) X(checkbox, size, checkbox) \
    X(sliderTrack, size, sliderTrack) X(sliderThumb, size, sliderThumb) X(handle, size, handle) \
    X(ruler, size, ruler) X(meter, size, meter) X(panelHandle, size, panelHandle) \
    X(trackHeader, size, trackHeader) X(track, size, track) X(iconSmall, size, iconSmall) \
    X(icon, size, icon) X(sheetWidth, size, sheetWidth) X(settingsWidth, size, settingsWidth) \
    X(settingsTitles, size, settingsTitles) X(swatchWidth, size, swatchWidth) X(swatchHeight, size, swatchHeight) \
    X(swatchBar, size, swatchBar) X(popoverWidth, size, popoverWidth) \
    X(searchWidth, size, searchWidth) X(searchWidthCompact, size, searchWidthCompact) \
    X(libraryWidth, size, libraryWidth) X(libraryWidthCompact, size, libraryWidthCompact) \
    X(windowGap, size, windowGap) X(windowWidth, size, windowWidth) X(windowHeight, size, windowHeight) \
    X(windowMinWidth, size, windowMinWidth) X(windowMinHeight, size, windowMinHeight) \
    X(narrowBelow, size, narrowBelow) X(thumbnailWidth, size, thumbnailWidth) \
    X(thumbnailHeight, size, thumbnailHeight) X(tag, size, tag) X(noticeWidth, size, noticeWidth) \
    X(noticePadding, size, noticePadding) X(textWidth, size, textWidth) X(bar, size, bar) \
    X(barPitch, size, barPitch) X(barHeight, size, barHeight) X(menuWidth, size, menuWidth) X(play, size, play) \
    X(grip, size, grip) X(ribbon, size, ribbon) X(waveMinHeight, size, waveMinHeight) X(meterWidth, size, meterWidth) \
    X(valueWidth, size, valueWidth) X(valueWidthShort, size, valueWidthShort) X(voiceWidth, size, voiceWidth) \
    X(voiceWidthCompact, size, voiceWidthCompact) X(hairline, stroke, hairline) \
    X(strokeControl, stroke, control) X(focus, stroke, focus) X(focusGap, stroke, focusGap) \
    X(strokePlayhead, stroke, playhead) X(motionPress, motion, press) X(motionHover, motion, hover) \
    X(motionStandard, motion, standard) X(motionPanel, motion, panel) X(noticeIn, motion, noticeIn) \
    X(noticeOut, motion, noticeOut) X(tooltipDelay, motion, tooltipDelay) X(spinner, motion, spinner) \
    X(loadingShimmer, motion, loadingShimmer) X(disabledGraphic, opacity, disabledGraphic) \
    X(mutedRegion, opacity, mutedRegion) X(topicBadge, opacity, topicBadge)

// The text styles of type.scale.
#define TONEQUILL_TYPES(X) \
    X(caption) X(captionStrong) X(body) X(bodyStrong) X(label) X(heading) X(title)

// clang-format on
