// Hooks of the platform libraries that the daemon's life cycle and its requests call.
#pragma once

extern "C"
{
    void LogModuleUpdate();
    void checkFirstBootFlag();
    void checkUpgradeFlag();
    void kobd_lib_init();
    void initUssdEventSvr();
    void updateArplistTimerInit();
    void pemixAlg_init();
    void kobd_lib_exit();

    // Makes the running configuration durable. 0, or 14 when it could not be written.
    int update_config();
}
