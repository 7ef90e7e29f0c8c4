tonequill_register_qml_modules(${room})
