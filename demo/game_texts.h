#pragma once

#include <string_view>

/// The text files of the made game directory, as UTF-8 with LF; they are written as Windows-1252
/// with CR LF. All content is invented. The shape is that of a game's configuration files: columns,
/// sections that close with "end", and three ways of marking a comment.

struct GameText {
  std::string_view path;  // below the game directory
  std::string_view text;
};

inline constexpr GameText kGameTexts[] = {
    {R"(data\gta.dat)", R"(# Load list of GTA San Andreas
# Read from top to bottom: archives, definitions, collisions, placements.
#
# Archives
#
IMG MODELS\GTA_INT.IMG
#
# Definitions
#
IDE DATA\VEHICLES.IDE
IDE DATA\PEDS.IDE
IDE DATA\MAPS\HAFEN.IDE
IDE DATA\MAPS\RING.IDE
#
# Collisions
#
COLFILE 0 MODELS\COLL\FAHRZEUGE.COL
COLFILE 0 MODELS\COLL\PERSONEN.COL
#
# Placements
#
IPL DATA\MAPS\HAFEN.IPL
IPL DATA\MAPS\RING.IPL
#
# Splash screen
#
SPLASH LOADSC2
)"},
    {R"(data\handling.cfg)", R"(; Handling of all vehicles
;
; id           name in capitals
; mass         kg
; turn         turning mass
; drag         air drag
; grip, loss   traction
; g            gears
; vmax         km/h
; acc          acceleration
; d            drive: F front, R rear, 4 all wheels
; e            engine: P petrol, D diesel, E electric
; brk          brakes
; steer        steering lock in degrees
;
; id       mass    turn     drag  grip  loss  g  vmax   acc   d e brk   steer
KARAT      1450.0  2900.0   1.9   0.74  0.82  5  215.0  24.0  R P  9.0  32.0
KOMBI      1600.0  3600.0   2.3   0.62  0.80  5  165.0  15.0  F D  6.5  35.0
STERN      1850.0  4400.0   2.1   0.66  0.82  5  190.0  18.0  R P  7.0  33.0
DROSCHKE   1550.0  3500.0   2.3   0.64  0.82  5  160.0  15.0  R D  6.8  38.0
LIEFERAN   2200.0  6000.0   3.0   0.58  0.78  4  140.0  11.0  F D  5.5  36.0
LASTER     6500.0 36000.0   4.2   0.55  0.75  5  110.0   7.0  R D  4.5  34.0
KIPPER     8500.0 48000.0   4.4   0.55  0.75  5  100.0   6.5  R D  4.2  34.0
LINIE9     9500.0 56000.0   4.6   0.54  0.76  5  115.0   7.5  R D  5.0  40.0
MUELLMAX   7500.0 40000.0   4.4   0.55  0.76  4   95.0   6.0  R D  4.6  36.0
LOESCH     7000.0 38000.0   3.6   0.60  0.80  5  145.0  13.0  4 D  8.0  34.0
RETTUNG    2600.0  9500.0   3.0   0.62  0.81  5  160.0  15.5  F D  7.4  35.0
STREIFE    1650.0  4000.0   2.0   0.70  0.83  5  200.0  20.0  R P  8.5  34.0
PRITSCHE   1700.0  4200.0   2.7   0.60  0.78  4  145.0  13.0  R P  6.0  35.0
STRANDY    1200.0  2200.0   3.2   0.66  0.77  4  140.0  16.0  4 P  6.2  36.0
OLDIE      1350.0  3200.0   2.9   0.56  0.76  4  140.0  11.5  R P  4.8  31.0
FLITZER    1050.0  1900.0   2.2   0.68  0.81  5  175.0  17.5  F P  7.2  36.0
CABRIO     1300.0  2700.0   2.2   0.68  0.82  5  185.0  18.5  R P  7.4  34.0
ROLLER      180.0   110.0   4.0   1.30  0.84  3   95.0  12.0  R P  9.0  35.0
CHOPPER     520.0   210.0   4.2   1.50  0.86  4  160.0  19.0  R P 10.0  32.0
ENDURO      400.0   170.0   4.8   1.55  0.84  5  150.0  21.0  R P 11.0  36.0
;
; end of table
)"},
    {R"(data\vehicles.ide)",
     R"(# Vehicles: id, model, textures, type, handling, name, class, frequency, flags
cars
400, karat, karat, car, KARAT, KARAT, sport, 7, 0
401, kombi, kombi, car, KOMBI, KOMBI, family, 10, 0
402, stern, stern, car, STERN, STERN, executive, 8, 0
403, droschke, droschke, car, DROSCHKE, DROSCHK, taxi, 10, 0
404, lieferan, lieferan, car, LIEFERAN, LIEFERA, worker, 10, 0
405, laster, laster, truck, LASTER, LASTER, worker, 6, 0
406, kipper, kipper, truck, KIPPER, KIPPER, worker, 4, 0
407, linie9, linie9, truck, LINIE9, LINIE9, bus, 5, 0
408, muellmax, muellmax, truck, MUELLMAX, MUELLMX, worker, 3, 0
409, loesch, loesch, truck, LOESCH, LOESCH, emergency, 10, 0
410, rettung, rettung, car, RETTUNG, RETTUNG, emergency, 10, 0
411, streife, streife, car, STREIFE, STREIFE, emergency, 10, 0
412, pritsche, pritsche, car, PRITSCHE, PRITSCH, worker, 8, 0
413, strandy, strandy, car, STRANDY, STRANDY, leisure, 4, 0
414, oldie, oldie, car, OLDIE, OLDIE, family, 5, 0
415, flitzer, flitzer, car, FLITZER, FLITZER, small, 10, 0
416, cabrio, cabrio, car, CABRIO, CABRIO, sport, 6, 0
417, roller, roller, bike, ROLLER, ROLLER, bike, 9, 0
418, chopper, chopper, bike, CHOPPER, CHOPPER, bike, 6, 0
419, enduro, enduro, bike, ENDURO, ENDURO, bike, 5, 0
end
)"},
    {R"(data\carcols.dat)",
     R"(# Paint: the palette first, then the pairs of colours for each vehicle
col
8,8,10 # 0 Schwarz
238,240,240 # 1 Weiß
42,82,130 # 2 Hafenblau
136,20,24 # 3 Rostrot
60,92,68 # 4 Flaschengrün
116,120,124 # 5 Grau
212,176,44 # 6 Taxigelb
92,74,58 # 7 Moccabraun
168,172,176 # 8 Silber
224,120,32 # 9 Signalorange
end

car
karat, 0,0, 3,3, 8,0
kombi, 2,2, 4,4, 5,5, 7,7
stern, 0,0, 8,8, 5,0
droschke, 6,6
lieferan, 1,1, 8,8, 2,1
laster, 5,1, 3,1
kipper, 9,5
linie9, 1,2
muellmax, 9,9
loesch, 3,1
rettung, 1,3
streife, 1,4
pritsche, 7,7, 3,5
strandy, 2,1, 9,1
oldie, 4,1, 7,7
flitzer, 3,3, 2,2, 6,6, 1,1
cabrio, 3,0, 8,8
roller, 3,3, 4,4
chopper, 0,0
enduro, 9,1, 2,1
end
)"},
    {R"(data\peds.ide)", R"(# People: id, model, textures, kind, behaviour, walk, drives
peds
1, hafenarb, hafenarb, worker, STAT_TOUGH, man, laster
2, fischfrau, fischfrau, citizen, STAT_CALM, woman, kombi
3, schraub1, schraub1, dealer, STAT_TOUGH, man, karat
4, schraub2, schraub2, dealer, STAT_COOL, man, flitzer
5, pendler, pendler, citizen, STAT_NERVOUS, man, stern
6, kioskfrau, kioskfrau, citizen, STAT_CALM, oldwoman, oldie
7, kurier, kurier, citizen, STAT_COOL, man, roller
8, nachtwae, nachtwae, guard, STAT_TOUGH, man, pritsche
9, taxler, taxler, worker, STAT_CALM, man, droschke
10, studi, studi, citizen, STAT_COOL, woman, flitzer
11, rentner, rentner, citizen, STAT_CALM, oldman, oldie
12, surfer, surfer, citizen, STAT_COOL, man, strandy
end
)"},
    {R"(data\timecyc.dat)", R"(// Weather: for each kind eight rows over the day
// Amb    Dir      Sky top      Sky bottom   SunSz  Far     Fog    Clouds
//
////////////////////////////////// SONNE_STADT
22 22 22  255 250 240   70 130 200   190 214 232   1.0   800.0   100.0   210 210 210  // 00:00
24 24 26  250 245 235   64 120 190   180 204 226   1.0   800.0   100.0   200 200 204  // 05:00
40 38 36  255 240 214   90 148 208   236 206 170   2.6   800.0    80.0   236 204 176  // 06:00
50 50 50  255 252 246   80 146 220   198 224 240   1.4   900.0    80.0   236 238 240  // 07:00
52 52 52  255 255 250   76 144 224   200 226 244   1.0  1000.0    80.0   244 244 244  // 12:00
46 42 38  255 226 190   82 110 168   244 178 116   3.0   850.0    80.0   246 186 130  // 19:00
30 28 32  240 200 190   50  64 112   150 104 108   1.4   800.0    90.0   130 104 120  // 20:00
24 24 28  250 245 240   30  44  84    64  70 100   1.0   800.0   100.0    80  84 104  // 22:00
//
////////////////////////////////// WOLKEN_STADT
20 20 22  220 220 224   60  70  84   104 110 120   0.0   600.0    60.0   104 108 114  // 00:00
20 20 22  220 220 224   60  70  84   104 110 120   0.0   600.0    60.0   104 108 114  // 05:00
30 30 32  226 226 228   92 102 116   140 146 152   0.0   620.0    50.0   140 144 150  // 06:00
36 36 38  230 230 232  112 122 136   160 166 172   0.0   640.0    50.0   164 168 172  // 07:00
40 40 42  232 232 234  124 134 146   172 178 184   0.0   660.0    50.0   176 180 184  // 12:00
34 34 36  228 226 226  104 112 126   150 152 156   0.0   640.0    50.0   152 154 158  // 19:00
26 26 30  222 220 224   72  80  96   112 116 124   0.0   620.0    55.0   112 114 122  // 20:00
22 22 26  220 220 224   60  68  84    96 102 112   0.0   600.0    60.0    98 102 112  // 22:00
//
////////////////////////////////// REGEN_STADT
18 18 20  200 204 210   40  46  54    70  76  84   0.0   400.0    20.0    70  74  80  // 00:00
18 18 20  200 204 210   40  46  54    70  76  84   0.0   400.0    20.0    70  74  80  // 05:00
24 24 26  204 208 212   62  70  80    96 102 110   0.0   420.0    20.0    96 100 106  // 06:00
30 30 32  208 212 216   80  88  98   116 122 130   0.0   440.0    20.0   116 120 126  // 07:00
32 32 34  210 214 218   88  96 106   124 130 138   0.0   450.0    20.0   124 128 134  // 12:00
28 28 30  206 208 212   74  80  90   106 110 118   0.0   440.0    20.0   106 110 116  // 19:00
22 22 24  202 204 210   50  56  66    80  84  92   0.0   420.0    20.0    80  84  90  // 20:00
20 20 22  200 204 210   42  48  58    70  76  84   0.0   400.0    20.0    70  74  82  // 22:00
//
)"},
    {R"(data\popcycle.dat)", R"(// Traffic and people over the day
// maxpeds maxcars  workers citizens dealers guards
//
// INNENSTADT, working day
 8   9   10  60  20  10  // Midnight
 6   7   15  55  20  10  // 2 o'clock
10  12   40  50   5   5  // 4 o'clock
22  20   45  50   0   5  // 6 o'clock
28  22   35  60   0   5  // 8 o'clock, rush hour, light
30  20   25  70   0   5  // 10 o'clock
34  22   20  75   0   5  // noon
30  22   25  70   0   5  // 2 p.m.
30  24   35  60   0   5  // 4 p.m., rush hour, light
30  24   35  60   0   5  // 6 p.m., rush hour, light
24  18   15  70  10   5  // 8 p.m.
16  14   10  65  15  10  // 10 p.m.
//
// HAFEN, working day
 4   5   30  30  20  20  // Midnight
 4   5   35  25  20  20  // 2 o'clock
10  10   70  20   0  10  // 4 o'clock
18  16   75  15   0  10  // 6 o'clock
18  16   75  15   0  10  // 8 o'clock
18  16   75  15   0  10  // 10 o'clock
16  14   70  20   0  10  // noon
18  16   75  15   0  10  // 2 p.m.
18  16   75  15   0  10  // 4 p.m.
12  12   60  25   5  10  // 6 p.m.
 8   8   40  30  15  15  // 8 p.m.
 6   6   30  30  20  20  // 10 p.m.
)"},
    {R"(data\object.dat)", R"(; Objects that can be knocked over
; name, mass, turning mass, drag, elasticity, uprooting limit, effect, light
;
laterne01, 600.0, 4000.0, 0.99, 0.05, 200.0, 0, 255 255 255
laterne02, 600.0, 4000.0, 0.99, 0.05, 200.0, 0, 255 255 255
laterne03, 600.0, 4000.0, 0.99, 0.05, 200.0, 0, 255 255 255
laterne_dbl, 900.0, 6000.0, 0.99, 0.05, 260.0, 0, 255 255 255
ampel01, 500.0, 3500.0, 0.99, 0.05, 150.0, 0, 0 0 0
muelltonne, 60.0, 60.0, 0.99, 0.10, 0.0, 2, 0 0 0
hydrant, 400.0, 400.0, 0.99, 0.05, 80.0, 7, 0 0 0
parkbank, 120.0, 240.0, 0.99, 0.05, 40.0, 0, 0 0 0
reklame_a, 300.0, 900.0, 0.99, 0.05, 120.0, 0, 0 0 0
reklame_b, 300.0, 900.0, 0.99, 0.05, 120.0, 0, 0 0 0
reklame_c, 300.0, 900.0, 0.99, 0.05, 120.0, 0, 0 0 0
zeitungsbox, 40.0, 40.0, 0.99, 0.10, 0.0, 2, 0 0 0
bauzaun, 80.0, 200.0, 0.99, 0.05, 20.0, 0, 0 0 0
;
; end of table
)"},
    {R"(data\maps\hafen.ide)", R"(# Harbour: id, model, textures, distance, flags
objs
3100, hafen_halle01, hafen1, 299, 0
3101, hafen_halle02, hafen1, 299, 0
3102, hafen_mauer01, hafen2, 150, 0
3103, hafen_platz01, hafen2, 299, 0
3104, hafen_bruecke01, hafen3, 299, 0
3105, hafen_zaun01, hafen3, 120, 4
3106, reklame_a, reklame, 100, 0
3107, reklame_b, reklame, 100, 0
3108, reklame_c, reklame, 100, 0
end
)"},
    {R"(data\maps\hafen.ipl)", R"(# Harbour: id, model, interior, position, rotation, distant model
inst
3100, hafen_halle01, 0, 2410.5, -2440.2, 13.6, 0, 0, 0, 1, -1
3101, hafen_halle02, 0, 2476.0, -2440.2, 13.6, 0, 0, 0, 1, -1
3102, hafen_mauer01, 0, 2380.0, -2490.8, 12.9, 0, 0, 0.7071, 0.7071, -1
3103, hafen_platz01, 0, 2430.0, -2480.0, 12.6, 0, 0, 0, 1, -1
3104, hafen_bruecke01, 0, 2550.4, -2405.5, 15.1, 0, 0, 0.3827, 0.9239, -1
3105, hafen_zaun01, 0, 2396.2, -2460.0, 13.2, 0, 0, 0, 1, -1
3106, reklame_a, 0, 2402.7, -2430.1, 17.4, 0, 0, 0, 1, -1
3107, reklame_b, 0, 2451.0, -2430.1, 17.4, 0, 0, 0, 1, -1
3108, reklame_c, 0, 2499.3, -2430.1, 17.4, 0, 0, 0, 1, -1
end
)"},
    {R"(data\maps\ring.ide)", R"(# Ring road: id, model, textures, distance, flags
objs
3300, ring_strasse01, ring1, 299, 0
3301, ring_bruecke01, ring1, 299, 0
3302, ring_mauer01, ring2, 150, 0
end
)"},
    {R"(data\maps\ring.ipl)", R"(# Ring road: id, model, interior, position, rotation, distant model
inst
3300, ring_strasse01, 0, 1310.0, -900.0, 36.0, 0, 0, 0, 1, -1
3301, ring_bruecke01, 0, 1366.5, -912.0, 38.2, 0, 0, 0, 1, -1
3302, ring_mauer01, 0, 1325.0, -884.4, 37.1, 0, 0, 0, 1, -1
end
)"},
    {R"(data\testlauf1.log)",
     R"(Testlauf 1: 20 Fahrzeuge geladen, 12 Personen geladen, keine Auffälligkeiten.
)"},
    {R"(data\testlauf2.log)", R"(Testlauf 2: Absturz nach 14 Minuten am Hafen, nicht nachstellbar.
)"},
    {R"(audio\CONFIG\stations.cfg)", R"(; Radio stations: number, file, name on the display
1, sender1.cfg, Radio Ringstraße
2, sender2.cfg, Hafenfunk
3, sender3.cfg, Welle Nord
4, sender4.cfg, Nachtexpress
; end of list
)"},
    {R"(audio\CONFIG\sender1.cfg)", "songs=14\nmoderation=ja\n"},
    {R"(audio\CONFIG\sender2.cfg)", "songs=11\nmoderation=ja\n"},
    {R"(audio\CONFIG\sender3.cfg)", "songs=16\nmoderation=nein\n"},
    {R"(audio\CONFIG\sender4.cfg)", "songs=9\nmoderation=nein\n"},
    {R"(text\german.gxt)", R"(Platzhalter für die deutschen Texte des Spiels.
)"},
    {R"(ReadMe.txt)",
     R"(Dies ist kein Spiel, sondern eine Attrappe: ein kleiner Ordner von der Gestalt eines
GTA-San-Andreas-Ordners, an dem sich zeigen lässt, was eine Installation verändert.
)"},
};
