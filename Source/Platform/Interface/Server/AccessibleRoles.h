// What the toolkit would tell screen readers of our windows and pop-up menus says too little: a
// window is a window, and a menu's field is called by its label and what is chosen. Server's
// thread.
#pragma once

// Once, when the toolkit has started.
void InstallAccessibleRoles();
