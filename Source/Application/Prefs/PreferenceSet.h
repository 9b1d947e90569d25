// One named set of remembered settings of one application.
#pragma once

struct PreferenceSet;
