#pragma once

namespace CLI {
class App;
}

// Each adds its sub-command to the command line. The sub-command runs when the command line has been parsed,
// and throws Failure.

void addDbCommand(CLI::App &app);
void addDescribeCommand(CLI::App &app);
void addDisassembleCommand(CLI::App &app);
void addImageCommand(CLI::App &app);
void addRunCommand(CLI::App &app);
void addSoundCommand(CLI::App &app);
void addTextCommand(CLI::App &app);
void addTVCCommand(CLI::App &app);
void addSpriteCommand(CLI::App &app);
