#pragma once

class AppController;
class ProgramServiceFactory;

// Makes the status strip the program's controller and its navigation panel the menu button's
// window, both reaching the application controller through their hooks.
void wireDesktopController(ProgramServiceFactory &services, AppController &controller);
