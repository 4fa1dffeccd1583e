<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="zh_CN">
<context>
    <name></name>
    <message id="刚刚"><source/><translation>just now</translation></message>
    <message id="秒"><source/><translation>s</translation></message>
    <message id="分钟"><source/><translation>min</translation></message>
    <message id="小时"><source/><translation>h</translation></message>
    <message id="天"><source/><translation>d</translation></message>
    <message id="%@前"><source/><translation>%@ ago</translation></message>
    <message id="%@后"><source/><translation>in %@</translation></message>
    <message id="正在采样"><source/><translation>Sampling</translation></message>
    <message id="剩余 %@"><source/><translation>%@ left</translation></message>
    <message id="充满还需 %@"><source/><translation>%@ to full</translation></message>
    <message id="充电中"><source/><translation>Charging</translation></message>
    <message id="已充满"><source/><translation>Charged</translation></message>
    <message id="使用电池"><source/><translation>On battery</translation></message>
    <message id="已接通电源"><source/><translation>Plugged in</translation></message>
    <message id="正常"><source/><translation>Normal</translation></message>
    <message id="温热"><source/><translation>Warm</translation></message>
    <message id="较热"><source/><translation>Hot</translation></message>
    <message id="过热"><source/><translation>Overheating</translation></message>
    <message id="未知"><source/><translation>Unknown</translation></message>
    <message id="千问办公"><source/><translation>Qwen Office</translation></message>
    <message id="内存"><source/><translation>Memory</translation></message>
    <message id="磁盘"><source/><translation>Disk</translation></message>
    <message id="电量"><source/><translation>Battery</translation></message>
    <message id="网络"><source/><translation>Network</translation></message>
    <message id="散热"><source/><translation>Cooling</translation></message>
    <message id="Agent Token"><source/><translation>Agent tokens</translation></message>
    <message id="使用额度"><source/><translation>Usage limits</translation></message>
    <message id="声音"><source/><translation>Sound</translation></message>
    <message id="风扇与热状态"><source/><translation>Fans and thermal state</translation></message>
    <message id="8 个本地 Agent"><source/><translation>8 local agents</translation></message>
    <message id="Codex 时间窗口"><source/><translation>Codex time windows</translation></message>
    <message id="耳机与声音输出"><source/><translation>Headphones and sound output</translation></message>
    <message id="Token"><source/><translation>Tokens</translation></message>
    <message id="额度"><source/><translation>Limits</translation></message>
    <message id="请选择 %@。"><source/><translation>Choose %@.</translation></message>
    <message id="所选目录中没有 %@ 日志文件夹。"><source/><translation>The chosen folder has no %@ log folder.</translation></message>
    <message id="无法保存文件夹访问权限，请重新选择。"><source/><translation>The access to the folder could not be saved. Choose it again.</translation></message>
    <message id="连接这个目录"><source/><translation>Connect this folder</translation></message>
    <message id="连接 %@"><source/><translation>Connect %@</translation></message>
    <message id="连接 %@（%d/%d）"><source/><translation>Connect %@ (%d/%d)</translation></message>
    <message id="已为你定位到 %@。确认无误后点“连接这个目录”。"><source/><translation>This is %@. If it is the right folder, click “Connect this folder”.</translation></message>
    <message id="第 %d/%d 个：已为你定位到 %@。确认后会自动打开下一个目录。"><source/><translation>%d of %d: this is %@. Once you confirm, the next folder opens by itself.</translation></message>
    <message id="第 %d/%d 个：已为你定位到 %@。确认后即完成。"><source/><translation>%d of %d: this is %@. Confirm it and you are done.</translation></message>
    <message id="设置 %@ 的值必须是 %@。"><source/><translation>The setting %@ takes %@.</translation></message>
    <message id="设置 %@ 已停用，不能再写入。"><source/><translation>The setting %@ is retired and cannot be written.</translation></message>
    <message id="无法读取设置文件 %@（%@），其内容保持不变。"><source/><translation>The settings file %@ cannot be read (%@); it is left as it is.</translation></message>
    <message id="设置文件 %@ 已损坏，且旁边保留的损坏副本过多，请先清理。"><source/><translation>The settings file %@ is damaged, and too many damaged copies are kept beside it; remove some first.</translation></message>
    <message id="设置文件 %@ 已损坏，暂用默认设置。"><source/><translation>The settings file %@ is damaged; the defaults are used for now.</translation></message>
    <message id="损坏的设置文件已保留为 %@。"><source/><translation>The damaged settings file was kept as %@.</translation></message>
    <message id="无法写入设置文件 %@（%@）。"><source/><translation>The settings file %@ cannot be written (%@).</translation></message>
    <message id="另一个程序正在写入设置文件 %@，请稍后再试。"><source/><translation>Another program is writing the settings file %@; try again in a moment.</translation></message>
    <message id="这个值无法保存到设置中。"><source/><translation>This value cannot be stored in the settings.</translation></message>
    <message id="台式 Mac"><source/><translation>Desktop computer</translation></message>
    <message id="本应用缓存已清理，暂无额外内存可释放"><source/><translation>This app's caches are cleared; nothing more to release</translation></message>
    <message id="已释放 %@ 本应用内存"><source/><translation>Released %@ of this app’s memory</translation></message>
</context>
</TS>
