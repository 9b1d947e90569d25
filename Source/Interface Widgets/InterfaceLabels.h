// Numbers of the texts that widgets and displays show (Resources/*.rdef).
#pragma once

#include "SupportDefs.h"

enum InterfaceLabel : int32 {
    kLabelProjection = 1501,
    kLabelOf = 1502,
    kLabelChooseAxis = 1505,
    kLabelChooseScale = 1506,
    kLabelCancel = 1508,
    kLabelUse = 1509,

    kLabelSave = 1601,
    kLabelSaveKey = 1602,
    kLabelUndoKey = 1702,

    kLabelSimulation = 1800,
    kLabelAnimation = 1801,
    kLabelEpochs = 1802,

    kLabelGo = 2301,
    kLabelPause = 2302,
    kLabelGoKey = 2304,

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

    kLabelView = 3300,
    kLabelFit = 3301,
    kLabelFitKey = 3302,
    kLabelFollow = 3303,
    kLabelFollowNothing = 3304,
    kLabelNames = 3305,
    kLabelNamesKey = 3306,
    kLabelScaleBar = 3307,
    kLabelTime = 3308,
    kLabelSavePicture = 3309,
    kLabelSavePictureKey = 3310,
    kLabelAppMenu = 3311,
    kLabelPictureSuffix = 3312,
    kLabelSky = 3313,
    kLabelLength = 3314,
    kLabelReference = 3315,
};
