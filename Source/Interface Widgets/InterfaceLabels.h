// Numbers of the texts that the program shows (Resources/*.rdef), as far as several windows use
// them or the platform's own numbering has them. Texts of one letter are shortcuts.
#pragma once

#include "Platform/Support/SupportDefs.h"

enum InterfaceLabel : int32 {
    kLabelUntitled = 1500,
    kLabelProjection = 1501,
    kLabelOf = 1502,
    kLabelTrailDiscOf = 1503,
    kLabelAnimationOf = 1504,
    kLabelChooseAxis = 1505,
    kLabelChooseScale = 1506,
    kLabelBuilding = 1507,
    kLabelCancel = 1508,
    kLabelUse = 1509,
    kLabelMessageBefore = 1510,  // the name of the message's owner
    kLabelMessageAfter = 1511,
    kLabelMessage = 1512,
    kLabelEpochsOf = 1514,
    kLabelOK = 1515,
    kLabelAboutTitle = 1516,

    kLabelFile = 1600,
    kLabelSave = 1601,
    kLabelSaveKey = 1602,
    kLabelSaveAs = 1603,
    kLabelClose = 1604,
    kLabelCloseKey = 1605,
    kLabelCloseThenOpen = 1606,
    kLabelSaveCurrentEpoch = 1607,

    kLabelEdit = 1700,
    kLabelUndo = 1701,
    kLabelUndoKey = 1702,
    kLabelDeleteBody = 1703,
    kLabelDeleteBodyKey = 1704,
    kLabelRedo = 1711,

    kLabelSimulation = 1800,
    kLabelAnimation = 1801,
    kLabelEpochs = 1802,

    kLabelBodies = 1900,
    kLabelNewBody = 1901,
    kLabelNewBodyKey = 1902,
    kLabelTrailDisc = 1903,

    kLabelNewDisplay = 2000,
    kLabelNewProjection = 2001,

    kLabelBodySettings = 2100,
    kLabelEditBody = 2101,
    kLabelName = 2102,
    kLabelMass = 2103,
    kLabelRadius = 2104,
    kLabelPosition = 2105,
    kLabelFirstPosition = 2106,  // the three components
    kLabelVelocity = 2109,
    kLabelFirstVelocity = 2110,  // the three components
    kLabelRelativeTo = 2113,
    kLabelOrigin = 2114,

    kLabelColors = 2200,
    kLabelTrailColor = 2201,
    kLabelLeaveTrail = 2202,
    kLabelDiscColor = 2203,
    kLabelDrawDisc = 2204,
    kLabelRed = 2205,
    kLabelGreen = 2206,
    kLabelBlue = 2207,

    kLabelGlobalControls = 2300,
    kLabelGo = 2301,
    kLabelPause = 2302,
    kLabelWait = 2303,
    kLabelGoKey = 2304,
    kLabelCenterOfMass = 2305,
    kLabelNow = 2306,
    kLabelUponGo = 2307,
    kLabelTime = 2308,
    kLabelCutoff = 2309,
    kLabelSlow = 2310,
    kLabelFast = 2311,
    kLabelSmallErrors = 2312,
    kLabelBlanks = 2313,
    kLabelLargeErrors = 2314,
    kLabelIgnoreSmaller = 2315,
    kLabelBlank = 2316,
    kLabelOrder = 2317,

    kLabelAnimationBox = 2400,
    kLabelSmoothness = 2401,
    kLabelSmoothTrails = 2402,
    kLabelJaggedTrails = 2403,
    kLabelLinesUpTo = 2404,
    kLabelPixelsLong = 2405,
    kLabelFrequency = 2406,
    kLabelSmooth = 2407,
    kLabelChoppy = 2408,
    kLabelUpdateScreen = 2409,
    kLabelTimesPerSecond = 2410,

    kLabelDisplay = 2500,
    kLabelScale = 2501,
    kLabelAxis = 2502,
    kLabelErase = 2503,

    kLabelMake = 2600,
    kLabelFirstReference = 2601,  // the five references, one after the other
    kLabelBe = 2606,

    kLabelSightAlong = 2700,
    kLabelFirstAxis = 2701,  // the three axes

    kLabelNewSimulation = 2800,
    kLabelNewSimulationKey = 2801,
    kLabelOpen = 2802,
    kLabelOpenKey = 2803,
    kLabelAbout = 2804,
    kLabelQuit = 2805,
    kLabelQuitKey = 2806,
    kLabelReenable = 2807,

    kLabelTimeIs = 2900,
    kLabelStateEdited = 2901,
    kLabelStatePaused = 2902,
    kLabelStateGo = 2903,
    kLabelStateLogged = 2904,

    kLabelEpoch = 3000,
    kLabelDeleteEpoch = 3001,
    kLabelLogEpoch = 3002,

    kLabelSaveChanges = 3100,
    kLabelQuestion = 3101,
    kLabelDontSave = 3102,
    kLabelNeverAsk = 3103,

    kLabelAboutText = 3200,

    kLabelView = 3300,
    kLabelFit = 3301,
    kLabelFitKey = 3302,
    kLabelFollow = 3303,
    kLabelFollowNothing = 3304,
    kLabelNames = 3305,
    kLabelNamesKey = 3306,
    kLabelScaleBar = 3307,
    kLabelShowTime = 3308,
    kLabelSavePicture = 3309,
    kLabelSavePictureKey = 3310,
    kLabelAppMenu = 3311,
    kLabelPictureSuffix = 3312,
    kLabelSky = 3313,
    kLabelLength = 3314,
    kLabelReference = 3315,
    kLabelSavePictureTitle = 3316,

    kLabelOpenRecent = 3500,
    kLabelClearRecent = 3501,

    kLabelEpochsKey = 3719,
    kLabelAnimationKey = 3743,
};
