<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AreaPanel</name>
    <message>
        <source>Supports and areas</source>
        <translation>Lager und Bereiche</translation>
    </message>
    <message>
        <source>Add an area that is kept void, to be given numbers below</source>
        <translation>Einen Bereich hinzufügen, der frei bleibt; seine Maße stehen unten</translation>
    </message>
    <message>
        <source>Add rectangle</source>
        <translation>Neues Rechteck</translation>
    </message>
    <message>
        <source>Add disc</source>
        <translation>Neuer Kreis</translation>
    </message>
    <message>
        <source>void</source>
        <translation>frei</translation>
    </message>
    <message>
        <source>solid</source>
        <translation>gefüllt</translation>
    </message>
    <message>
        <source>second solid</source>
        <translation>zweite Füllung</translation>
    </message>
    <message>
        <source>What is kept</source>
        <translation>Was bleibt</translation>
    </message>
    <message>
        <source>x and y</source>
        <translation>x und y</translation>
    </message>
    <message>
        <source>x</source>
        <translation>x</translation>
    </message>
    <message>
        <source>y</source>
        <translation>y</translation>
    </message>
    <message>
        <source>Directions that are held</source>
        <translation>Gehaltene Richtungen</translation>
    </message>
    <message>
        <source>Keep</source>
        <translation>Bleibt</translation>
    </message>
    <message>
        <source>Hold in</source>
        <translation>Hält in</translation>
    </message>
    <message>
        <source>From x</source>
        <translation>Von x</translation>
    </message>
    <message>
        <source>First column</source>
        <translation>Erste Spalte</translation>
    </message>
    <message>
        <source>From y</source>
        <translation>Von y</translation>
    </message>
    <message>
        <source>First row</source>
        <translation>Erste Zeile</translation>
    </message>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
    <message>
        <source>Number of columns</source>
        <translation>Zahl der Spalten</translation>
    </message>
    <message>
        <source>Rows</source>
        <translation>Zeilen</translation>
    </message>
    <message>
        <source>Number of rows</source>
        <translation>Zahl der Zeilen</translation>
    </message>
    <message>
        <source>Centre x</source>
        <translation>Mitte x</translation>
    </message>
    <message>
        <source>Centre in x</source>
        <translation>Mitte in x</translation>
    </message>
    <message>
        <source>Centre y</source>
        <translation>Mitte y</translation>
    </message>
    <message>
        <source>Centre in y</source>
        <translation>Mitte in y</translation>
    </message>
    <message>
        <source>Radius</source>
        <translation>Radius</translation>
    </message>
    <message>
        <source>Hole&apos;s radius</source>
        <translation>Lochradius</translation>
    </message>
    <message>
        <source>Radius of the hole in the disc</source>
        <translation>Radius des Lochs im Kreis</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Delete the support or area</source>
        <translation>Das Lager oder den Bereich löschen</translation>
    </message>
    <message>
        <source>Change numbers</source>
        <translation>Maße ändern</translation>
    </message>
    <message numerus="yes">
        <source>%n piece(s) selected. Select one to see its numbers.</source>
        <translation>
            <numerusform>%n Teil ausgewählt. Wählen Sie eines aus, um seine Zahlen zu sehen.</numerusform>
            <numerusform>%n Teile ausgewählt. Wählen Sie eines aus, um seine Zahlen zu sehen.</numerusform>
        </translation>
    </message>
    <message>
        <source>Where the plate is held, and the areas that stay void or solid whatever the optimiser does. Select one to change its numbers below.</source>
        <translation>Wo die Scheibe gehalten wird, und die Bereiche, die leer oder voll bleiben, was der Optimierer auch tut. Wählen Sie einen aus, um unten seine Zahlen zu ändern.</translation>
    </message>
</context>
<context>
    <name>Banner</name>
    <message>
        <source>Problem</source>
        <translation>Problem</translation>
    </message>
</context>
<context>
    <name>BrushBar</name>
    <message>
        <source>Brush</source>
        <translation>Pinsel</translation>
    </message>
    <message>
        <source>S&amp;maller brush</source>
        <translation>&amp;Kleinerer Pinsel</translation>
    </message>
    <message>
        <source>&amp;Larger brush</source>
        <translation>&amp;Größerer Pinsel</translation>
    </message>
    <message>
        <source>&amp;Round brush</source>
        <translation>&amp;Runder Pinsel</translation>
    </message>
    <message>
        <source>S&amp;quare brush</source>
        <translation>&amp;Quadratischer Pinsel</translation>
    </message>
    <message>
        <source>Paint with a disc</source>
        <translation>Mit einer Kreisscheibe malen</translation>
    </message>
    <message>
        <source>Paint with a square</source>
        <translation>Mit einem Quadrat malen</translation>
    </message>
    <message>
        <source> wide</source>
        <translation> breit</translation>
    </message>
    <message>
        <source>Size of the brush in elements</source>
        <translation>Größe des Pinsels in Elementen</translation>
    </message>
    <message>
        <source>Size of the brush in elements ([ and ])</source>
        <translation>Größe des Pinsels in Elementen ([ und ])</translation>
    </message>
    <message>
        <source>Re&amp;ctangle</source>
        <translation>Re&amp;chteck</translation>
    </message>
    <message>
        <source>&amp;Disc</source>
        <translation>&amp;Kreis</translation>
    </message>
    <message>
        <source>Paint elements by a rectangle, from corner to corner</source>
        <translation>Elemente mit einem Rechteck malen, von Ecke zu Ecke</translation>
    </message>
    <message>
        <source>Paint elements by a disc, from its centre to its border</source>
        <translation>Elemente mit einem Kreis malen, von der Mitte zum Rand</translation>
    </message>
</context>
<context>
    <name>Document</name>
    <message>
        <source>Untitled</source>
        <translation>Unbenannt</translation>
    </message>
</context>
<context>
    <name>DrawingClock</name>
    <message>
        <source>&amp;Timer of three minutes</source>
        <translation>&amp;Zeitlimit von drei Minuten</translation>
    </message>
    <message>
        <source>Time left %1:%2</source>
        <translation>Restzeit %1:%2</translation>
    </message>
    <message>
        <source>Draw against the clock, which starts with the first stroke on an empty plate</source>
        <translation>Gegen die Uhr zeichnen; sie beginnt mit dem ersten Strich auf einer leeren Scheibe</translation>
    </message>
    <message>
        <source>Timer: start with an empty plate</source>
        <translation>Zeitlimit: mit einer leeren Scheibe beginnen</translation>
    </message>
</context>
<context>
    <name>DrawingMode</name>
    <message>
        <source>Start with an &amp;empty plate</source>
        <translation>Mit einer &amp;leeren Scheibe beginnen</translation>
    </message>
    <message>
        <source>Start with the &amp;optimiser&apos;s design</source>
        <translation>Mit dem Entwurf des &amp;Optimierers beginnen</translation>
    </message>
    <message>
        <source>Rub out the whole drawing</source>
        <translation>Die ganze Zeichnung ausradieren</translation>
    </message>
    <message>
        <source>Take over the optimiser&apos;s design, and make it better</source>
        <translation>Den Entwurf des Optimierers übernehmen und verbessern</translation>
    </message>
    <message>
        <source>Start with an empty plate</source>
        <translation>Mit einer leeren Scheibe beginnen</translation>
    </message>
    <message>
        <source>Start with the optimiser&apos;s design</source>
        <translation>Mit dem Entwurf des Optimierers beginnen</translation>
    </message>
    <message>
        <source>Scoring...</source>
        <translation>Wird bewertet …</translation>
    </message>
    <message>
        <source>Draw from the loads to the supports</source>
        <translation>Von den Lasten zu den Lagern zeichnen</translation>
    </message>
    <message>
        <source>Does not hold</source>
        <translation>Hält nicht</translation>
    </message>
    <message>
        <source>Over the budget</source>
        <translation>Zu viel Material</translation>
    </message>
    <message>
        <source>The optimiser is paused</source>
        <translation>Der Optimierer ist angehalten</translation>
    </message>
    <message>
        <source>The optimiser is still working</source>
        <translation>Der Optimierer rechnet noch</translation>
    </message>
    <message>
        <source>As stiff as the optimiser&apos;s: 100 %</source>
        <translation>So steif wie der des Optimierers: 100 %</translation>
    </message>
    <message>
        <source>Stiffer than the optimiser&apos;s: %1 %</source>
        <translation>Steifer als der des Optimierers: %1 %</translation>
    </message>
    <message>
        <source>%1 % as stiff as the optimiser&apos;s</source>
        <translation>%1 % der Steifigkeit des Optimierers</translation>
    </message>
    <message>
        <source>As stiff as you can: you may use as much material as the optimiser.</source>
        <translation>So steif wie möglich – mit ebenso viel Material wie der Optimierer.</translation>
    </message>
    <message>
        <source>Rub out %1 of the plate</source>
        <translation>%1 der Scheibe ausradieren</translation>
    </message>
    <message>
        <source>Settled</source>
        <translation>Konvergiert</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>The timeline does not play here: only its start counts.</source>
        <translation>Der Zeitplan läuft hier nicht ab: Nur sein Anfang zählt.</translation>
    </message>
    <message>
        <source>Not settled, but compared as it is</source>
        <translation>Nicht konvergiert, wird aber so verglichen</translation>
    </message>
    <message>
        <source>Still working</source>
        <translation>Rechnet noch</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Gestoppt</translation>
    </message>
    <message>
        <source>Does not hold yet</source>
        <translation>Hält noch nicht</translation>
    </message>
    <message>
        <source>Shown once a design holds</source>
        <translation>Erscheint, sobald ein Entwurf hält</translation>
    </message>
    <message>
        <source>The optimiser has stopped</source>
        <translation>Der Optimierer ist stehen geblieben</translation>
    </message>
    <message>
        <source>Greys are not compared</source>
        <translation>Graustufen werden nicht verglichen</translation>
    </message>
    <message>
        <source>Draw in black and white to be compared with the optimiser</source>
        <translation>In Schwarzweiß zeichnen, um mit dem Optimierer verglichen zu werden</translation>
    </message>
    <message>
        <source>Does not count: the optimiser&apos;s design has a warning</source>
        <translation>Zählt nicht: Zum Entwurf des Optimierers gibt es eine Warnung</translation>
    </message>
    <message>
        <source>Rub out %1 of the %2 elements</source>
        <translation>%1 der %2 Elemente ausradieren</translation>
    </message>
    <message>
        <source>Rub out %1 of the %2 cells</source>
        <translation>%1 der %2 Zellen ausradieren</translation>
    </message>
    <message>
        <source>Loose, but counts as material: %1</source>
        <translation>Lose, zählt aber als Material: %1</translation>
    </message>
    <message>
        <source>Yours holds, the optimiser&apos;s does not</source>
        <translation>Ihrer hält, der des Optimierers nicht</translation>
    </message>
    <message>
        <source>Best so far %1</source>
        <translation>Bisher bester Wert %1</translation>
    </message>
    <message>
        <source>Does not count: it did not begin with an empty plate. Start with one to win</source>
        <translation>Zählt nicht: nicht auf einer leeren Scheibe begonnen. Beginnen Sie mit einer leeren, um zu gewinnen</translation>
    </message>
    <message>
        <source>Later strokes do not count. Start with an empty plate to go again</source>
        <translation>Weitere Striche zählen nicht. Für eine neue Runde mit einer leeren Scheibe beginnen</translation>
    </message>
    <message>
        <source>Time is up, without a result</source>
        <translation>Die Zeit ist um, ohne Ergebnis</translation>
    </message>
    <message>
        <source>Time is up: %1</source>
        <translation>Die Zeit ist um: %1</translation>
    </message>
    <message>
        <source>Time is up: only yours holds</source>
        <translation>Die Zeit ist um: Nur Ihrer hält</translation>
    </message>
    <message>
        <source>Time is up: the optimiser is still working</source>
        <translation>Die Zeit ist um: Der Optimierer rechnet noch</translation>
    </message>
    <message>
        <source>You are compared with the optimiser&apos;s best so far: %1</source>
        <translation>Verglichen wird mit dem bisher besten Wert des Optimierers: %1</translation>
    </message>
</context>
<context>
    <name>ExportActions</name>
    <message>
        <source>Edge of an element in millimetres:

The plate becomes %1 × %2 mm. The scene keeps the size: change it in the panel Scene.</source>
        <translation>Kantenlänge eines Elements in Millimetern:

Die Platte wird %1 × %2 mm groß. Die Szene behält diese Größe; ändern lässt sie sich unter „Szene“.</translation>
    </message>
    <message>
        <source>&amp;Picture (PNG, SVG)...</source>
        <translation>&amp;Bild (PNG, SVG) …</translation>
    </message>
    <message>
        <source>The plate with its signs</source>
        <translation>Die Scheibe mit ihren Symbolen</translation>
    </message>
    <message>
        <source>&amp;Design (PNG, CSV)...</source>
        <translation>&amp;Entwurf (PNG, CSV) …</translation>
    </message>
    <message>
        <source>The densities of the design</source>
        <translation>Die Dichten des Entwurfs</translation>
    </message>
    <message>
        <source>&amp;Outline (SVG, DXF, STL)...</source>
        <translation>&amp;Umriss (SVG, DXF, STL) …</translation>
    </message>
    <message>
        <source>The edge of the material as a drawing, or the plate as a solid</source>
        <translation>Der Rand des Materials als Zeichnung oder die Scheibe als Volumenkörper</translation>
    </message>
    <message>
        <source>&amp;Animation (GIF)...</source>
        <translation>&amp;Animation (GIF) …</translation>
    </message>
    <message>
        <source>The last minutes of the run</source>
        <translation>Die letzten Minuten des Laufs</translation>
    </message>
    <message>
        <source>Drawing the animation</source>
        <translation>Die Animation wird gezeichnet</translation>
    </message>
    <message>
        <source>Written: %1</source>
        <translation>Geschrieben: %1</translation>
    </message>
    <message>
        <source>The export failed</source>
        <translation>Der Export ist gescheitert</translation>
    </message>
    <message>
        <source>Export a picture</source>
        <translation>Bild exportieren</translation>
    </message>
    <message>
        <source>Pictures (*.png *.svg)</source>
        <translation>Bilder (*.png *.svg)</translation>
    </message>
    <message>
        <source>The picture</source>
        <translation>Das Bild</translation>
    </message>
    <message>
        <source>Export a broken part?</source>
        <translation>Ein Bauteil exportieren, das nicht hält?</translation>
    </message>
    <message>
        <source>The design would not hold as drawn. %1 Export it anyway?</source>
        <translation>Der Entwurf würde so, wie er gezeichnet ist, nicht halten. %1 Trotzdem exportieren?</translation>
    </message>
    <message>
        <source>Export the design</source>
        <translation>Entwurf exportieren</translation>
    </message>
    <message>
        <source>Grey pictures (*.png);;Tables (*.csv)</source>
        <translation>Graustufenbilder (*.png);;Tabellen (*.csv)</translation>
    </message>
    <message>
        <source>The design</source>
        <translation>Der Entwurf</translation>
    </message>
    <message>
        <source>Export the outline</source>
        <translation>Umriss exportieren</translation>
    </message>
    <message>
        <source>Outlines (*.svg *.dxf);;Solids (*.stl)</source>
        <translation>Umrisse (*.svg *.dxf);;Volumenkörper (*.stl)</translation>
    </message>
    <message>
        <source>Size of an element</source>
        <translation>Größe eines Elements</translation>
    </message>
    <message>
        <source>Thickness</source>
        <translation>Dicke</translation>
    </message>
    <message>
        <source>Thickness of the plate in millimetres:</source>
        <translation>Dicke der Scheibe in Millimetern:</translation>
    </message>
    <message>
        <source>The outline</source>
        <translation>Der Umriss</translation>
    </message>
    <message>
        <source>Export an animation</source>
        <translation>Animation exportieren</translation>
    </message>
    <message>
        <source>Animations (*.gif)</source>
        <translation>Animationen (*.gif)</translation>
    </message>
    <message>
        <source>The animation</source>
        <translation>Die Animation</translation>
    </message>
    <message>
        <source>Drawing the picture</source>
        <translation>Bild wird gezeichnet</translation>
    </message>
    <message>
        <source>Writing the design</source>
        <translation>Entwurf wird geschrieben</translation>
    </message>
    <message>
        <source>Tracing the outline</source>
        <translation>Umriss wird bestimmt</translation>
    </message>
    <message>
        <source>Copy p&amp;icture</source>
        <translation>B&amp;ild kopieren</translation>
    </message>
    <message>
        <source>Put a picture of the plate on the clipboard</source>
        <translation>Ein Bild der Scheibe in die Zwischenablage legen</translation>
    </message>
    <message>
        <source>The picture is on the clipboard</source>
        <translation>Das Bild ist in der Zwischenablage</translation>
    </message>
    <message>
        <source>The picture was not copied</source>
        <translation>Das Bild wurde nicht kopiert</translation>
    </message>
</context>
<context>
    <name>FieldBar</name>
    <message>
        <source>A&amp;nimate the deformation</source>
        <translation>Ver&amp;formung abspielen</translation>
    </message>
    <message>
        <source>Animate</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Let the plate move between rest and its deformed shape</source>
        <translation>Die Scheibe zwischen Ruhe und verformter Gestalt bewegen</translation>
    </message>
    <message>
        <source>Load case</source>
        <translation>Lastfall</translation>
    </message>
    <message>
        <source>Load case that is shown</source>
        <translation>Gezeigter Lastfall</translation>
    </message>
    <message>
        <source>Show the &amp;material</source>
        <translation>&amp;Material zeigen</translation>
    </message>
    <message>
        <source>Material</source>
        <translation>Material</translation>
    </message>
    <message>
        <source>The densities of the design</source>
        <translation>Die Dichten des Entwurfs</translation>
    </message>
    <message>
        <source>Show the &amp;energy</source>
        <translation>&amp;Energie zeigen</translation>
    </message>
    <message>
        <source>Energy</source>
        <translation>Energie</translation>
    </message>
    <message>
        <source>Which elements carry much: their share in the compliance</source>
        <translation>Welche Elemente viel tragen: ihr Anteil an der Nachgiebigkeit</translation>
    </message>
    <message>
        <source>Show the &amp;stress</source>
        <translation>&amp;Spannung zeigen</translation>
    </message>
    <message>
        <source>Stress</source>
        <translation>Spannung</translation>
    </message>
    <message>
        <source>The von Mises stress of the elements</source>
        <translation>Die Vergleichsspannung (von Mises) der Elemente</translation>
    </message>
    <message>
        <source>Show the &amp;deformed plate</source>
        <translation>&amp;Verformte Scheibe zeigen</translation>
    </message>
    <message>
        <source>Deformed</source>
        <translation>Verformt</translation>
    </message>
    <message>
        <source>How the loads deform the design. The displacements are scaled so that you can see them; the legend shows the factor.</source>
        <translation>Wie die Lasten den Entwurf verformen. Die Verschiebungen sind so skaliert, dass man sie sieht; die Legende nennt den Faktor.</translation>
    </message>
    <message>
        <source>All load cases</source>
        <translation>Alle Lastfälle</translation>
    </message>
    <message>
        <source>Load case %1</source>
        <translation>Lastfall %1</translation>
    </message>
</context>
<context>
    <name>FileActions</name>
    <message>
        <source>&amp;Discard</source>
        <translation>&amp;Verwerfen</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Neu</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>&amp;Öffnen …</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>Save &amp;as...</source>
        <translation>Speichern &amp;unter …</translation>
    </message>
    <message>
        <source>&amp;Import a design...</source>
        <translation>Entwurf &amp;importieren …</translation>
    </message>
    <message>
        <source>Open &amp;recent</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>A plate that is held at its left edge, to begin with</source>
        <translation>Eine links gelagerte Scheibe als Anfang</translation>
    </message>
    <message>
        <source>Open a scene</source>
        <translation>Eine Szene öffnen</translation>
    </message>
    <message>
        <source>Save the scene</source>
        <translation>Die Szene speichern</translation>
    </message>
    <message>
        <source>Save the scene under another name</source>
        <translation>Die Szene unter einem anderen Namen speichern</translation>
    </message>
    <message>
        <source>Draw on from a design of this plate, a grey PNG or a CSV file, and keep it as a variant</source>
        <translation>An einem Entwurf dieser Scheibe weiterzeichnen (Graustufen-PNG oder CSV) und ihn als Variante behalten</translation>
    </message>
    <message>
        <source>The scene cannot be opened</source>
        <translation>Die Szene lässt sich nicht öffnen</translation>
    </message>
    <message>
        <source>The file stays as it is. Before you save over it, it is renamed to %1.</source>
        <translation>Die Datei bleibt, wie sie ist. Bevor Sie darüber speichern, wird sie in %1 umbenannt.</translation>
    </message>
    <message>
        <source>The saved design cannot be read</source>
        <translation>Der gespeicherte Entwurf lässt sich nicht lesen</translation>
    </message>
    <message>
        <source>The variants cannot be read</source>
        <translation>Die Varianten lassen sich nicht lesen</translation>
    </message>
    <message>
        <source>Save changes?</source>
        <translation>Änderungen speichern?</translation>
    </message>
    <message>
        <source>%1 has changes that are not saved.</source>
        <translation>%1 enthält Änderungen, die nicht gespeichert sind.</translation>
    </message>
    <message>
        <source>A new scene</source>
        <translation>Eine neue Szene</translation>
    </message>
    <message>
        <source>Recover changes?</source>
        <translation>Änderungen wiederherstellen?</translation>
    </message>
    <message>
        <source>%1 has changes from another run of Voxam Live, which ended before they were saved. Recover them?</source>
        <translation>%1 enthält Änderungen aus einem früheren Lauf von Voxam Live, der vor dem Speichern endete. Sollen sie wiederhergestellt werden?</translation>
    </message>
    <message>
        <source>Import a design</source>
        <translation>Entwurf importieren</translation>
    </message>
    <message>
        <source>Designs (*.png *.csv)</source>
        <translation>Entwürfe (*.png *.csv)</translation>
    </message>
    <message>
        <source>Import design</source>
        <translation>Entwurf importieren</translation>
    </message>
    <message>
        <source>The design cannot be imported</source>
        <translation>Der Entwurf lässt sich nicht importieren</translation>
    </message>
    <message>
        <source>The file has changed</source>
        <translation>Die Datei hat sich geändert</translation>
    </message>
    <message>
        <source>Another program has changed %1 since it was opened here. Save anyway, and lose those changes? Save as... another file to keep both.</source>
        <translation>Ein anderes Programm hat %1 geändert, seit die Datei hier geöffnet wurde. Trotzdem speichern und jene Änderungen verlieren? Mit „Speichern unter …“ bleibt beides erhalten.</translation>
    </message>
    <message>
        <source>Save without the comments?</source>
        <translation>Ohne die Kommentare speichern?</translation>
    </message>
    <message>
        <source>%1 has comments, which would be lost. Save as... another file to keep them.</source>
        <translation>%1 enthält Kommentare, die verloren gingen. Mit „Speichern unter …“ bleiben sie erhalten.</translation>
    </message>
    <message>
        <source>The scene cannot be saved</source>
        <translation>Die Szene lässt sich nicht speichern</translation>
    </message>
    <message>
        <source>No files yet</source>
        <translation>Noch keine Dateien</translation>
    </message>
    <message>
        <source>Reading the scene</source>
        <translation>Szene wird gelesen</translation>
    </message>
    <message>
        <source>The drawing is empty: cells of this design become solid from a density of %1 on, and no cell is so dense.</source>
        <translation>Die Zeichnung ist leer: Zellen dieses Entwurfs werden ab einer Dichte von %1 zu Material, und keine Zelle ist so dicht.</translation>
    </message>
    <message>
        <source>The drawing now has %1 × %1 cells per element. The optimiser starts afresh, and drawings as fine as this have a best score of their own.</source>
        <translation>Die Zeichnung hat jetzt %1 × %1 Zellen je Element. Der Optimierer beginnt neu, und so feine Zeichnungen haben einen eigenen Bestwert.</translation>
    </message>
</context>
<context>
    <name>FirstHint</name>
    <message>
        <source>Drag the arrow</source>
        <translation>Am Pfeil ziehen</translation>
    </message>
</context>
<context>
    <name>Gallery</name>
    <message>
        <source>Gallery</source>
        <translation>Galerie</translation>
    </message>
    <message>
        <source>Scenes: %1</source>
        <translation>Szenen: %1</translation>
    </message>
    <message>
        <source>Drag the weight along the free end, and the bracket follows.</source>
        <translation>Die Last am freien Ende verschieben – die Konsole folgt.</translation>
    </message>
    <message>
        <source>A load crosses a beam in five steps. See how much of the design changes.</source>
        <translation>Eine Last überquert einen Träger in fünf Schritten. Wie viel ändert sich am Entwurf?</translation>
    </message>
    <message>
        <source>Pipe through a bracket</source>
        <translation>Rohr durch eine Konsole</translation>
    </message>
    <message>
        <source>A pipe is in the way of a bar. Tick Blob moves, and it finds its place.</source>
        <translation>Ein Rohr ist einem Stab im Weg. Mit „Aussparung wandert“ findet es seinen Platz.</translation>
    </message>
    <message>
        <source>Beam on two supports</source>
        <translation>Träger auf zwei Stützen</translation>
    </message>
    <message>
        <source>Half of a symmetric beam is computed. The rollers stand for the other half.</source>
        <translation>Vom symmetrischen Träger wird eine Hälfte berechnet. Die Rollenlager vertreten die andere.</translation>
    </message>
    <message>
        <source>Plate with a hole</source>
        <translation>Scheibe mit Loch</translation>
    </message>
    <message>
        <source>A plate is pulled to the right. The colours show where the rim of the hole works hardest.</source>
        <translation>Die Scheibe wird nach rechts gezogen. Die Farben zeigen, wo der Lochrand am stärksten beansprucht ist.</translation>
    </message>
    <message>
        <source>Beam on rollers</source>
        <translation>Träger auf Rollen</translation>
    </message>
    <message>
        <source>Nothing stops this beam from sliding. Add the support that is missing.</source>
        <translation>Dieser Träger ist horizontal verschieblich. Das fehlende Lager ergänzen.</translation>
    </message>
    <message>
        <source>L-bracket</source>
        <translation>L-Konsole</translation>
    </message>
    <message>
        <source>A bracket below a ceiling leaves a corner free for something else.</source>
        <translation>Eine Konsole unter der Decke lässt eine Ecke für anderes frei.</translation>
    </message>
    <message>
        <source>Bridge with two load cases</source>
        <translation>Brücke mit zwei Lastfällen</translation>
    </message>
    <message>
        <source>A deck that stays solid carries traffic on one half at a time.</source>
        <translation>Eine feste Fahrbahn trägt Verkehr auf je einer Hälfte.</translation>
    </message>
    <message>
        <source>Wheel</source>
        <translation>Rad</translation>
    </message>
    <message>
        <source>Spokes form between a hub and a rim that the ground pushes in six places.</source>
        <translation>Zwischen Nabe und Felge, auf die der Boden an sechs Stellen drückt, bilden sich Speichen.</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Spielen</translation>
    </message>
    <message>
        <source>Understand</source>
        <translation>Verstehen</translation>
    </message>
    <message>
        <source>Design</source>
        <translation>Entwerfen</translation>
    </message>
    <message>
        <source>Draw</source>
        <translation>Zeichnen</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Weitere</translation>
    </message>
    <message>
        <source>Pull at something, and watch the structure form.</source>
        <translation>An etwas ziehen und zusehen, wie sich das Tragwerk formt.</translation>
    </message>
    <message>
        <source>See where structures work hard, and what holds them.</source>
        <translation>Sehen, wo Tragwerke beansprucht sind und was sie hält.</translation>
    </message>
    <message>
        <source>Parts with kept areas and load cases, as in practice.</source>
        <translation>Bauteile mit vorgegebenen Bereichen und Lastfällen, wie in der Praxis.</translation>
    </message>
    <message>
        <source>Draw with the same amount of material as the optimiser gets.</source>
        <translation>Zeichnen mit ebenso viel Material, wie der Optimierer bekommt.</translation>
    </message>
    <message>
        <source>Further scenes in the program&apos;s directory.</source>
        <translation>Weitere Szenen im Verzeichnis des Programms.</translation>
    </message>
    <message>
        <source>Cantilever</source>
        <translation>Kragscheibe</translation>
    </message>
    <message>
        <source>Moving load</source>
        <translation>Wandernde Last</translation>
    </message>
    <message>
        <source>Hold a weight at the free end with two fifths of the plate.</source>
        <translation>Eine Last am freien Ende mit zwei Fünfteln der Scheibe halten.</translation>
    </message>
    <message>
        <source>Draw one half of a symmetric beam. The other half mirrors it.</source>
        <translation>Eine Hälfte eines symmetrischen Trägers zeichnen. Die andere spiegelt sie.</translation>
    </message>
    <message>
        <source>Lead the force around the corner that stays free.</source>
        <translation>Die Kraft um die Ecke führen, die frei bleibt.</translation>
    </message>
    <message>
        <source>Draw what carries the deck when either half is loaded.</source>
        <translation>Zeichnen, was die Fahrbahn trägt, wenn je eine Hälfte belastet ist.</translation>
    </message>
    <message>
        <source>Join hub and rim. The ground pushes in six places in turn.</source>
        <translation>Nabe und Felge verbinden. Der Boden drückt der Reihe nach an sechs Stellen.</translation>
    </message>
</context>
<context>
    <name>LiveRun</name>
    <message>
        <source>Scoring the design</source>
        <translation>Der Entwurf wird bewertet</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>LoadCaseBox</name>
    <message>
        <source>Load cases</source>
        <translation>Lastfälle</translation>
    </message>
    <message>
        <source>Load cases; those that are ticked are in use</source>
        <translation>Lastfälle; die angekreuzten werden berücksichtigt</translation>
    </message>
    <message>
        <source>Loads of one load case act at the same time; load cases take turns, such as wind from the left and from the right. Tick the load cases to optimise for. New loads belong to the selected one. Numbers start at 0, as in scene files.</source>
        <translation>Die Lasten eines Lastfalls wirken gleichzeitig; Lastfälle wechseln sich ab, etwa Wind von links und von rechts. Haken Sie die Lastfälle an, für die optimiert wird. Neue Lasten gehören zum gewählten. Gezählt wird ab 0, wie in Szenendateien.</translation>
    </message>
    <message>
        <source>Use load case</source>
        <translation>Lastfall berücksichtigen</translation>
    </message>
    <message>
        <source>Leave out load case</source>
        <translation>Lastfall auslassen</translation>
    </message>
    <message>
        <source>Add &amp;case</source>
        <translation>&amp;Lastfall hinzufügen</translation>
    </message>
    <message>
        <source>Delete case</source>
        <translation>Lastfall löschen</translation>
    </message>
    <message>
        <source>Delete the selected load case with its loads</source>
        <translation>Den ausgewählten Lastfall mit seinen Lasten löschen</translation>
    </message>
    <message>
        <source>Add load case</source>
        <translation>Lastfall hinzufügen</translation>
    </message>
    <message>
        <source>Delete load case</source>
        <translation>Lastfall löschen</translation>
    </message>
    <message numerus="yes">
        <source>Deleted with %n load(s); undo brings them back</source>
        <translation>
            <numerusform>Mit %n Last gelöscht; Rückgängig bringt sie zurück</numerusform>
            <numerusform>Mit %n Lasten gelöscht; Rückgängig bringt sie zurück</numerusform>
        </translation>
    </message>
    <message>
        <source>Name of the load case</source>
        <translation>Name des Lastfalls</translation>
    </message>
    <message>
        <source>Weight of the load case</source>
        <translation>Gewicht des Lastfalls</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Weight</source>
        <translation>Gewicht</translation>
    </message>
    <message>
        <source>The name of the selected load case, such as &quot;wind&quot;</source>
        <translation>Der Name des gewählten Lastfalls, etwa „Wind“</translation>
    </message>
    <message>
        <source>How much the selected load case counts. The optimiser minimises the sum of the compliances, each times its weight.</source>
        <translation>Wie viel der gewählte Lastfall zählt. Der Optimierer verkleinert die Summe der Nachgiebigkeiten, jede mal ihrem Gewicht.</translation>
    </message>
    <message>
        <source>Name load case</source>
        <translation>Lastfall benennen</translation>
    </message>
    <message>
        <source>Weigh load case</source>
        <translation>Lastfall gewichten</translation>
    </message>
</context>
<context>
    <name>LoadPanel</name>
    <message>
        <source>Loads</source>
        <translation>Lasten</translation>
    </message>
    <message>
        <source>Node of the load in x</source>
        <translation>Knoten der Last in x</translation>
    </message>
    <message>
        <source>Node of the load in y</source>
        <translation>Knoten der Last in y</translation>
    </message>
    <message>
        <source>Force in x, to the right</source>
        <translation>Kraft in x, nach rechts</translation>
    </message>
    <message>
        <source>Force in y, downwards</source>
        <translation>Kraft in y, nach unten</translation>
    </message>
    <message>
        <source>Load case of the load</source>
        <translation>Lastfall der Last</translation>
    </message>
    <message>
        <source>Node x</source>
        <translation>Knoten x</translation>
    </message>
    <message>
        <source>Force right</source>
        <translation>Kraft nach rechts</translation>
    </message>
    <message>
        <source>Force down</source>
        <translation>Kraft nach unten</translation>
    </message>
    <message>
        <source>Load case</source>
        <translation>Lastfall</translation>
    </message>
    <message>
        <source>Delete load</source>
        <translation>Last löschen</translation>
    </message>
    <message>
        <source>Move load</source>
        <translation>Last verschieben</translation>
    </message>
    <message>
        <source>Change force</source>
        <translation>Kraft ändern</translation>
    </message>
    <message>
        <source>Change load case</source>
        <translation>Lastfall ändern</translation>
    </message>
    <message>
        <source>y</source>
        <translation>y</translation>
    </message>
    <message>
        <source>Magnitude of the force</source>
        <translation>Betrag der Kraft</translation>
    </message>
    <message>
        <source>Angle of the force, from the right, counterclockwise</source>
        <translation>Winkel der Kraft, von rechts gegen den Uhrzeigersinn</translation>
    </message>
    <message>
        <source>°</source>
        <translation>°</translation>
    </message>
    <message>
        <source>Magnitude</source>
        <translation>Betrag</translation>
    </message>
    <message>
        <source>Angle</source>
        <translation>Winkel</translation>
    </message>
    <message>
        <source>Turn load</source>
        <translation>Last drehen</translation>
    </message>
    <message numerus="yes">
        <source>%n piece(s) selected. Select one to see its numbers.</source>
        <translation>
            <numerusform>%n Teil ausgewählt. Wählen Sie eines aus, um seine Zahlen zu sehen.</numerusform>
            <numerusform>%n Teile ausgewählt. Wählen Sie eines aus, um seine Zahlen zu sehen.</numerusform>
        </translation>
    </message>
    <message>
        <source>The column of nodes on which the load acts, or the first one</source>
        <translation>Die Knotenspalte, auf der die Last wirkt, oder die erste davon</translation>
    </message>
    <message>
        <source>The row of nodes on which the load acts, or the first one</source>
        <translation>Die Knotenzeile, auf der die Last wirkt, oder die erste davon</translation>
    </message>
    <message>
        <source>The force, in a unit of your choice. A load on several nodes is shared among them.</source>
        <translation>Die Kraft, in einer Einheit nach Wahl. Eine Last auf mehreren Knoten verteilt sich auf sie.</translation>
    </message>
    <message>
        <source>The direction of the force: 0° points right, 90° up</source>
        <translation>Die Richtung der Kraft: 0° zeigt nach rechts, 90° nach oben</translation>
    </message>
    <message>
        <source>Loads of the same load case act at the same time</source>
        <translation>Lasten desselben Lastfalls wirken gleichzeitig</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>The view could not be computed: %1</source>
        <translation>Die Ansicht ließ sich nicht berechnen: %1</translation>
    </message>
    <message>
        <source>Change element size</source>
        <translation>Elementgröße ändern</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>&amp;Wiederholen</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>&amp;Draw and be scored</source>
        <translation>&amp;Zeichnen und bewerten lassen</translation>
    </message>
    <message>
        <source>Draw a structure, and compare it with the optimiser&apos;s</source>
        <translation>Ein Tragwerk zeichnen und mit dem des Optimierers vergleichen</translation>
    </message>
    <message>
        <source>&amp;Gallery...</source>
        <translation>&amp;Galerie …</translation>
    </message>
    <message>
        <source>The scenes that come with the program</source>
        <translation>Die Szenen, die zum Programm gehören</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Loads</source>
        <translation>Lasten</translation>
    </message>
    <message>
        <source>Course</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Numbers</source>
        <translation>Zahlen</translation>
    </message>
    <message>
        <source>Variants</source>
        <translation>Varianten</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Export</source>
        <translation>&amp;Exportieren</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Tools</source>
        <translation>&amp;Werkzeuge</translation>
    </message>
    <message>
        <source>&amp;Run</source>
        <translation>&amp;Rechnen</translation>
    </message>
    <message>
        <source>Varia&amp;nts</source>
        <translation>&amp;Varianten</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Keyboard shortcuts</source>
        <translation>&amp;Tastenkürzel</translation>
    </message>
    <message>
        <source>&amp;What is this?</source>
        <translation>&amp;Was ist das?</translation>
    </message>
    <message>
        <source>&amp;About Voxam Live</source>
        <translation>Ü&amp;ber Voxam Live</translation>
    </message>
    <message>
        <source>About Voxam Live</source>
        <translation>Über Voxam Live</translation>
    </message>
    <message>
        <source>&lt;h3&gt;Voxam Live %1&lt;/h3&gt;&lt;p&gt;The stiffest structure for a given amount of material, while you pull at it.&lt;/p&gt;&lt;p&gt;The program as a whole is under the GNU General Public License, version 3 or later, because it contains CHOLMOD and dxflib. It also uses SuiteSparse, OpenBLAS, oneTBB, cairo, libpng, giflib and nlohmann-json, each under its own licence, and Qt %2 under the GNU Lesser General Public License. See docs/licences.md in the source.&lt;/p&gt;</source>
        <translation>&lt;h3&gt;Voxam Live %1&lt;/h3&gt;&lt;p&gt;Das steifste Tragwerk aus einer gegebenen Menge Material, während Sie daran ziehen.&lt;/p&gt;&lt;p&gt;Das Programm als Ganzes steht unter der GNU General Public License, Version 3 oder neuer, weil es CHOLMOD und dxflib enthält. Es verwendet außerdem SuiteSparse, OpenBLAS, oneTBB, cairo, libpng, giflib und nlohmann-json, jeweils unter eigener Lizenz, und Qt %2 unter der GNU Lesser General Public License. Näheres steht im Quelltext in docs/licences.md.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>About &amp;Qt</source>
        <translation>Über &amp;Qt</translation>
    </message>
    <message>
        <source>Main</source>
        <translation>Hauptleiste</translation>
    </message>
    <message>
        <source>Tools</source>
        <translation>Werkzeuge</translation>
    </message>
    <message>
        <source>Iteration %1: the scene&apos;s timeline changes %2</source>
        <translation>Iteration %1: Der Zeitplan der Szene ändert %2</translation>
    </message>
    <message>
        <source> The tools for loads and supports come back with the end of the drawing (Ctrl+D).</source>
        <translation> Die Werkzeuge für Lasten und Lager sind nach dem Zeichnen wieder da (Strg+D).</translation>
    </message>
    <message>
        <source>Value under the pointer</source>
        <translation>Wert unter dem Zeiger</translation>
    </message>
    <message>
        <source>Not available: the design does not hold as drawn</source>
        <translation>Nicht verfügbar: Der Entwurf hält gezeichnet nicht</translation>
    </message>
    <message>
        <source>Computing...</source>
        <translation>Wird berechnet …</translation>
    </message>
    <message>
        <source>Shown once the design has settled</source>
        <translation>Erscheint, sobald der Entwurf zur Ruhe gekommen ist</translation>
    </message>
    <message>
        <source>&amp;Reset layout</source>
        <translation>Anordnung &amp;zurücksetzen</translation>
    </message>
    <message>
        <source>Show all panels and tool bars in their usual places and sizes</source>
        <translation>Alle Felder und Leisten am üblichen Platz und in üblicher Größe zeigen</translation>
    </message>
    <message>
        <source>Scene</source>
        <translation>Szene</translation>
    </message>
    <message>
        <source>Areas</source>
        <translation>Bereiche</translation>
    </message>
</context>
<context>
    <name>NumbersPanel</name>
    <message>
        <source>Assembly</source>
        <translation>Assemblierung</translation>
    </message>
    <message>
        <source>Factorisation</source>
        <translation>Faktorisierung</translation>
    </message>
    <message>
        <source>Solution</source>
        <translation>Lösung</translation>
    </message>
    <message>
        <source>Sensitivities</source>
        <translation>Sensitivitäten</translation>
    </message>
    <message>
        <source>Update and picture</source>
        <translation>Aktualisierung und Bild</translation>
    </message>
    <message>
        <source>Iteration</source>
        <translation>Iteration</translation>
    </message>
    <message>
        <source>Compliance</source>
        <translation>Nachgiebigkeit</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volumen</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Änderung</translation>
    </message>
    <message>
        <source>One iteration</source>
        <translation>Eine Iteration</translation>
    </message>
    <message>
        <source>Frames a second</source>
        <translation>Bilder pro Sekunde</translation>
    </message>
    <message>
        <source>How many times the optimiser has improved the design since it started afresh.</source>
        <translation>Wie oft der Optimierer den Entwurf seit dem Neubeginn verbessert hat.</translation>
    </message>
    <message>
        <source>How far the loads move the structure: force times displacement, summed over the load cases. The smaller it is, the stiffer is the structure.</source>
        <translation>Wie weit die Lasten das Tragwerk bewegen: Kraft mal Verschiebung, summiert über die Lastfälle. Je kleiner, desto steifer ist das Tragwerk.</translation>
    </message>
    <message>
        <source>Material of the design, in percent of the plate. It may differ a little from the volume you asked for, because the picture is a smoothed copy of the optimiser&apos;s densities.</source>
        <translation>Material des Entwurfs, in Prozent der Scheibe. Es kann etwas vom gewünschten Volumen abweichen, weil das Bild eine geglättete Kopie der Dichten des Optimierers ist.</translation>
    </message>
    <message>
        <source>The largest change of a density in the last iteration, from 0 to 1. A design settles when its compliance hardly changes, although single cells may still waver.</source>
        <translation>Die größte Änderung einer Dichte in der letzten Iteration, von 0 bis 1. Ein Entwurf ist konvergiert, wenn sich seine Nachgiebigkeit kaum noch ändert; einzelne Zellen können dann noch schwanken.</translation>
    </message>
    <message>
        <source>Time for one iteration, averaged over the last iterations.</source>
        <translation>Zeit für eine Iteration, gemittelt über die letzten Iterationen.</translation>
    </message>
    <message>
        <source>How often the picture of the design was replaced.</source>
        <translation>Wie oft das Bild des Entwurfs ersetzt wurde.</translation>
    </message>
    <message>
        <source>Where the time goes</source>
        <translation>Wofür die Zeit verwendet wird</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
    <message>
        <source>Compliance of the half</source>
        <translation>Nachgiebigkeit der Hälfte</translation>
    </message>
</context>
<context>
    <name>PieceActions</name>
    <message>
        <source>Cu&amp;t</source>
        <translation>&amp;Ausschneiden</translation>
    </message>
    <message>
        <source>Take away what is selected, to paste it</source>
        <translation>Das Ausgewählte entfernen, um es einzufügen</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Copy what is selected</source>
        <translation>Das Ausgewählte kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>Put what was copied under the hand; Alt with a drag copies as well</source>
        <translation>Das Kopierte unter dem Zeiger einfügen; Ziehen mit Alt kopiert ebenfalls</translation>
    </message>
    <message>
        <source>D&amp;elete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Delete the selected load, support or area</source>
        <translation>Die ausgewählte Last, das Lager oder den Bereich löschen</translation>
    </message>
    <message>
        <source>Of what is selected, at the middle of the plate</source>
        <translation>Für das Ausgewählte, an der Mitte der Scheibe</translation>
    </message>
    <message>
        <source>Mirrored copy, &amp;left and right</source>
        <translation>Gespiegelte Kopie, li&amp;nks und rechts</translation>
    </message>
    <message>
        <source>Mirrored copy, top and &amp;bottom</source>
        <translation>Gespiegelte Kopie, o&amp;ben und unten</translation>
    </message>
    <message>
        <source>Mirror left and &amp;right</source>
        <translation>Links und &amp;rechts spiegeln</translation>
    </message>
    <message>
        <source>&amp;Mirror top and bottom</source>
        <translation>Oben und &amp;unten spiegeln</translation>
    </message>
    <message>
        <source>&amp;Numbers...</source>
        <translation>&amp;Zahlen...</translation>
    </message>
    <message>
        <source>Turn load</source>
        <translation>Last drehen</translation>
    </message>
    <message>
        <source>Pull &amp;up</source>
        <translation>Nach &amp;oben ziehen</translation>
    </message>
    <message>
        <source>Pull &amp;down</source>
        <translation>Nach un&amp;ten ziehen</translation>
    </message>
    <message>
        <source>Pull to the le&amp;ft</source>
        <translation>Nach l&amp;inks ziehen</translation>
    </message>
    <message>
        <source>Pull to the ri&amp;ght</source>
        <translation>Nach re&amp;chts ziehen</translation>
    </message>
    <message>
        <source>Re&amp;verse</source>
        <translation>Um&amp;kehren</translation>
    </message>
    <message>
        <source>Load c&amp;ase</source>
        <translation>La&amp;stfall</translation>
    </message>
    <message>
        <source>Case %1</source>
        <translation>Lastfall %1</translation>
    </message>
    <message>
        <source>Change load case</source>
        <translation>Lastfall ändern</translation>
    </message>
    <message>
        <source>Change support</source>
        <translation>Lager ändern</translation>
    </message>
    <message>
        <source>Held in &amp;both directions</source>
        <translation>In &amp;beiden Richtungen gehalten</translation>
    </message>
    <message>
        <source>Held in &amp;x</source>
        <translation>In &amp;x gehalten</translation>
    </message>
    <message>
        <source>Held in &amp;y</source>
        <translation>In &amp;y gehalten</translation>
    </message>
    <message>
        <source>Keep &amp;void</source>
        <translation>Frei &amp;halten</translation>
    </message>
    <message>
        <source>Keep &amp;solid</source>
        <translation>&amp;Gefüllt halten</translation>
    </message>
    <message>
        <source>Keep sec&amp;ond solid</source>
        <translation>Mit &amp;zweiter Füllung halten</translation>
    </message>
    <message>
        <source>Add &amp;load here</source>
        <translation>Hier &amp;Last hinzufügen</translation>
    </message>
    <message>
        <source>Add load</source>
        <translation>Last hinzufügen</translation>
    </message>
    <message>
        <source>Add &amp;support here</source>
        <translation>Hier La&amp;ger hinzufügen</translation>
    </message>
    <message>
        <source>Add support</source>
        <translation>Lager hinzufügen</translation>
    </message>
</context>
<context>
    <name>PlateStage</name>
    <message>
        <source>Your design</source>
        <translation>Ihr Entwurf</translation>
    </message>
    <message>
        <source>The optimiser&apos;s design, as drawn</source>
        <translation>Der Entwurf des Optimierers in Schwarzweiß</translation>
    </message>
    <message>
        <source>Plate</source>
        <translation>Scheibe</translation>
    </message>
    <message>
        <source>The optimiser&apos;s design</source>
        <translation>Der Entwurf des Optimierers</translation>
    </message>
    <message>
        <source>As drawn means in black and white, without the greys of the optimiser. It has cells as large as those of your drawing. Outside this mode it has finer cells, so its compliance and material differ a little.</source>
        <translation>In Schwarzweiß heißt: ohne die Grautöne des Optimierers. Der Entwurf hat hier so große Zellen wie Ihre Zeichnung. Außerhalb dieses Modus hat er feinere Zellen, deshalb weichen Nachgiebigkeit und Material ein wenig ab.</translation>
    </message>
    <message>
        <source>&lt;qt&gt;The plate and the structure on it. Arrows are loads. Triangles are supports; a small wheel below one lets the plate slide. The tools change all of these.&lt;/qt&gt;</source>
        <translation>&lt;qt&gt;Die Scheibe mit dem Tragwerk. Pfeile sind Lasten. Dreiecke sind Lager; auf einem kleinen Rad darunter kann die Scheibe gleiten. Die Werkzeuge ändern all das.&lt;/qt&gt;</translation>
    </message>
    <message>
        <source>100 % means that your design is as stiff as the best design of the optimiser: the loads move it as little. Both may use the same amount of material. From 85 % on you win bronze, from 95 % silver and from 100 % gold, if you drew the design by hand and began with an empty plate.</source>
        <translation>100 % heißt, dass Ihr Entwurf so steif ist wie der beste Entwurf des Optimierers: Die Lasten bewegen ihn ebenso wenig. Beide dürfen gleich viel Material verwenden. Ab 85 % gewinnen Sie Bronze, ab 95 % Silber und ab 100 % Gold, wenn Sie den Entwurf von Hand gezeichnet und auf einer leeren Scheibe begonnen haben.</translation>
    </message>
</context>
<context>
    <name>Numbers</name>
    <message>
        <source>Compliance of the half %1</source>
        <translation>Nachgiebigkeit der Hälfte %1</translation>
    </message>
    <message>
        <source>Compliance %1</source>
        <translation>Nachgiebigkeit %1</translation>
    </message>
</context>
<context>
    <name>PlotPanel</name>
    <message>
        <source>Plot of compliance and volume over the iterations</source>
        <translation>Nachgiebigkeit und Volumen über den Iterationen</translation>
    </message>
    <message>
        <source>Compliance (left scale) and volume (right scale) over the iterations; dotted lines are edits and changes of the timeline, triangles are peaks above the scale</source>
        <translation>Nachgiebigkeit (linke Skala) und Volumen (rechte Skala) über den Iterationen; gepunktete Linien sind Bearbeitungen, Dreiecke sind Spitzen oberhalb der Skala</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Compliance</source>
        <translation>Nachgiebigkeit</translation>
    </message>
    <message>
        <source>Volume (dashed)</source>
        <translation>Volumen (gestrichelt)</translation>
    </message>
    <message>
        <source>Iterations</source>
        <translation>Iterationen</translation>
    </message>
    <message>
        <source>Compliance %1, volume %2; %3 edits in view</source>
        <translation>Nachgiebigkeit %1, Volumen %2; %3 Änderungen zu sehen</translation>
    </message>
    <message>
        <source>Compliance of the half</source>
        <translation>Nachgiebigkeit der Hälfte</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>is a picture, expected a scene; to open a design, use File &gt; Import a design</source>
        <translation>ist ein Bild statt einer Szene; einen Entwurf öffnen Sie mit Datei &gt; Entwurf importieren</translation>
    </message>
    <message>
        <source>gold</source>
        <translation>Gold</translation>
    </message>
    <message>
        <source>silver</source>
        <translation>Silber</translation>
    </message>
    <message>
        <source>bronze</source>
        <translation>Bronze</translation>
    </message>
    <message>
        <source>Scenes (*.json);;All files (*)</source>
        <translation>Szenen (*.json);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Untitled</source>
        <translation>Unbenannt</translation>
    </message>
    <message>
        <source>%1:  node %2, %3;  force %4, %5</source>
        <translation>%1:  Knoten %2, %3;  Kraft (%4; %5)</translation>
    </message>
    <message>
        <source>;  case %1</source>
        <translation>;  Lastfall %1</translation>
    </message>
    <message>
        <source>Node x %1, y %2</source>
        <translation>Knoten x %1, y %2</translation>
    </message>
    <message>
        <source>Load %1 at x %2, y %3: force %4, %5</source>
        <translation>Last %1 bei x %2, y %3: Kraft (%4; %5)</translation>
    </message>
    <message>
        <source>Move load</source>
        <translation>Last verschieben</translation>
    </message>
    <message>
        <source>Turn load</source>
        <translation>Last drehen</translation>
    </message>
    <message>
        <source>Add load</source>
        <translation>Last hinzufügen</translation>
    </message>
    <message>
        <source>Draw line</source>
        <translation>Linie zeichnen</translation>
    </message>
    <message>
        <source>Erase</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Paint support</source>
        <translation>Lager malen</translation>
    </message>
    <message>
        <source>Keep void</source>
        <translation>Frei halten</translation>
    </message>
    <message>
        <source>Keep solid</source>
        <translation>Gefüllt halten</translation>
    </message>
    <message>
        <source>Keep second solid</source>
        <translation>Gefüllt halten (zweite Art)</translation>
    </message>
    <message>
        <source>Paint blob</source>
        <translation>Aussparung malen</translation>
    </message>
    <message>
        <source>Draw</source>
        <translation>Zeichnen</translation>
    </message>
    <message>
        <source>Rub out</source>
        <translation>Radieren</translation>
    </message>
    <message>
        <source>Paint supports where the plate is fastened.</source>
        <translation>Malen Sie Lager, wo die Scheibe befestigt ist.</translation>
    </message>
    <message>
        <source>Tick the load cases that are to count.</source>
        <translation>Kreuzen Sie die Lastfälle an, die zählen sollen.</translation>
    </message>
    <message>
        <source>Change the volume, or erase kept elements.</source>
        <translation>Ändern Sie das Volumen, oder löschen Sie vorgegebene Elemente.</translation>
    </message>
    <message>
        <source>Give a load a force: pull its arrow.</source>
        <translation>Geben Sie einer Last eine Kraft: Ziehen Sie an ihrem Pfeil.</translation>
    </message>
    <message>
        <source>Move it, or erase what is kept void there.</source>
        <translation>Verschieben Sie sie, oder löschen Sie dort den freigehaltenen Bereich.</translation>
    </message>
    <message>
        <source>The equations cannot be solved: the plate is not held, or memory ran out. Hold it in x, in y and against turning, or use a smaller grid.</source>
        <translation>Das Gleichungssystem ist nicht lösbar: Die Scheibe ist nicht ausreichend gelagert, oder der Speicher reicht nicht. Lagern Sie sie in x, in y und gegen Verdrehen, oder verwenden Sie ein kleineres Netz.</translation>
    </message>
    <message>
        <source>The loads push the plate away. Hold it in x, in y and against turning, or use smaller forces. If the design is torn, start afresh.</source>
        <translation>Die Lasten schieben die Scheibe weg. Lagern Sie sie in x, in y und gegen Verdrehen, oder verwenden Sie kleinere Kräfte. Ist der Entwurf zerrissen, beginnen Sie neu.</translation>
    </message>
    <message>
        <source>The loads do no work. Put a force on a node that is not held, in a load case that is in use.</source>
        <translation>Die Lasten leisten keine Arbeit. Setzen Sie in einem berücksichtigten Lastfall eine Kraft auf einen Knoten, der nicht gelagert ist.</translation>
    </message>
    <message>
        <source>The library could not go on. Use a smaller grid, or start afresh.</source>
        <translation>Die Bibliothek konnte nicht weiterrechnen. Verwenden Sie ein kleineres Netz, oder beginnen Sie neu.</translation>
    </message>
    <message>
        <source>Load %1: %2</source>
        <translation>Last %1: %2</translation>
    </message>
    <message>
        <source>Support %1: %2</source>
        <translation>Lager %1: %2</translation>
    </message>
    <message>
        <source>Detail of the design: %1</source>
        <translation>Auflösung des Entwurfs: %1</translation>
    </message>
    <message>
        <source>Detail of the picture: %1</source>
        <translation>Auflösung des Bildes: %1</translation>
    </message>
    <message>
        <source>Grid: %1</source>
        <translation>Netz: %1</translation>
    </message>
    <message>
        <source> The run resumes with the change at iteration %1.</source>
        <translation> Der Lauf geht mit der Änderung bei Iteration %1 weiter.</translation>
    </message>
    <message>
        <source>As kept</source>
        <translation>Gemerkt</translation>
    </message>
    <message>
        <source>Forming</source>
        <translation>Formt sich</translation>
    </message>
    <message>
        <source>Computing</source>
        <translation>Rechnet</translation>
    </message>
    <message>
        <source>Not settled</source>
        <translation>Nicht konvergiert</translation>
    </message>
    <message>
        <source>Settled</source>
        <translation>Konvergiert</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Gestoppt</translation>
    </message>
    <message>
        <source>Arrow keys</source>
        <translation>Pfeiltasten</translation>
    </message>
    <message>
        <source>Move the hand on the plate by an element, with Shift by five</source>
        <translation>Die Hand auf der Scheibe um ein Element bewegen, mit der Umschalttaste um fünf</translation>
    </message>
    <message>
        <source>Enter</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>Press the tool at the hand; Enter again lets go</source>
        <translation>Das Werkzeug an der Hand ansetzen; nochmals Eingabe lässt los</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>Take back what the tool is doing</source>
        <translation>Zurücknehmen, was das Werkzeug gerade tut</translation>
    </message>
    <message>
        <source>N, Shift+N</source>
        <translation>N, Umschalt+N</translation>
    </message>
    <message>
        <source>Select the next or previous load (with Select and drag)</source>
        <translation>Nächste oder vorige Last auswählen (mit „Auswählen und ziehen“)</translation>
    </message>
    <message>
        <source>Move what is selected</source>
        <translation>Das Ausgewählte verschieben</translation>
    </message>
    <message>
        <source>Alt+Left, Right</source>
        <translation>Alt+Links, Rechts</translation>
    </message>
    <message>
        <source>Turn the selected load</source>
        <translation>Die ausgewählte Last drehen</translation>
    </message>
    <message>
        <source>Alt+Up, Down</source>
        <translation>Alt+Auf, Ab</translation>
    </message>
    <message>
        <source>Make its force larger or smaller</source>
        <translation>Ihre Kraft vergrößern oder verkleinern</translation>
    </message>
    <message>
        <source>Shift while turning</source>
        <translation>Umschalt beim Drehen</translation>
    </message>
    <message>
        <source>Any angle and force, no snapping</source>
        <translation>Beliebiger Winkel und Betrag, ohne Einrasten</translation>
    </message>
    <message>
        <source>Shift and a press</source>
        <translation>Umschalt und Drücken</translation>
    </message>
    <message>
        <source>A straight line from where the last stroke ended</source>
        <translation>Gerade Linie vom Ende des letzten Strichs</translation>
    </message>
    <message>
        <source>Right button</source>
        <translation>Rechte Maustaste</translation>
    </message>
    <message>
        <source>Open the menu of what is there; while drawing, rub out</source>
        <translation>Menü zu dem öffnen, was dort ist; beim Zeichnen radieren</translation>
    </message>
    <message>
        <source>Wheel, + and −</source>
        <translation>Mausrad, + und −</translation>
    </message>
    <message>
        <source>Zoom</source>
        <translation>Vergrößern und verkleinern</translation>
    </message>
    <message>
        <source>Middle button, Ctrl+Arrow keys</source>
        <translation>Mittlere Maustaste, Strg+Pfeiltasten</translation>
    </message>
    <message>
        <source>Move the plate in the window</source>
        <translation>Die Scheibe im Fenster verschieben</translation>
    </message>
    <message>
        <source>Element x %1, y %2</source>
        <translation>Element x %1, y %2</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>%1: cancelled</source>
        <translation>%1: abgebrochen</translation>
    </message>
    <message>
        <source>, load case %1</source>
        <translation>, Lastfall %1</translation>
    </message>
    <message>
        <source>, largest of %1 load cases</source>
        <translation>, größte von %1 Lastfällen</translation>
    </message>
    <message>
        <source>, sum of %1 load cases</source>
        <translation>, Summe von %1 Lastfällen</translation>
    </message>
    <message>
        <source>Share of this cell in the compliance %1, %2 × the average of the plate</source>
        <translation>Anteil dieser Zelle an der Nachgiebigkeit %1, das %2-Fache des Mittels der Scheibe</translation>
    </message>
    <message>
        <source> (load case %1)</source>
        <translation> (Lastfall %1)</translation>
    </message>
    <message>
        <source>Stress, von Mises %1, x %2, y %3, shear %4 force/mm²</source>
        <translation>Spannung: von Mises %1; x %2; y %3; Schub %4 Kraft/mm²</translation>
    </message>
    <message>
        <source>No material</source>
        <translation>Kein Material</translation>
    </message>
    <message>
        <source>Displacement of node %1, %2: %3, in x %4, in y %5 (force / E t)</source>
        <translation>Verschiebung des Knotens %1, %2: %3, in x %4, in y %5 (Kraft / E t)</translation>
    </message>
    <message>
        <source>Density</source>
        <translation>Dichte</translation>
    </message>
    <message>
        <source>Energy as a multiple of the average of the whole plate</source>
        <translation>Energie als Vielfaches des Mittels der ganzen Scheibe</translation>
    </message>
    <message>
        <source>Von Mises stress in force/mm² at a thickness of 1 mm</source>
        <translation>Vergleichsspannung (von Mises) in Kraft/mm² bei 1 mm Dicke</translation>
    </message>
    <message>
        <source>Deformed plate, displacements times %1</source>
        <translation>Verformte Scheibe, Verschiebungen mal %1</translation>
    </message>
    <message>
        <source>Density %1</source>
        <translation>Dichte %1</translation>
    </message>
    <message>
        <source>Copy load</source>
        <translation>Last kopieren</translation>
    </message>
    <message>
        <source>Move support</source>
        <translation>Lager verschieben</translation>
    </message>
    <message>
        <source>Move area</source>
        <translation>Bereich verschieben</translation>
    </message>
    <message>
        <source>Disc at %1, %2, radius %3</source>
        <translation>Kreis bei (%1; %2), Radius %3</translation>
    </message>
    <message>
        <source>Rectangle of %1 × %2 elements at x %3, y %4</source>
        <translation>Rechteck aus %1 × %2 Elementen bei x %3, y %4</translation>
    </message>
    <message>
        <source>x and y</source>
        <translation>x und y</translation>
    </message>
    <message>
        <source>x</source>
        <translation>x</translation>
    </message>
    <message>
        <source>y</source>
        <translation>y</translation>
    </message>
    <message>
        <source>Support at nodes x %1, y %2, held in %3</source>
        <translation>Lager an den Knoten x %1, y %2, gehalten in %3</translation>
    </message>
    <message>
        <source>Void</source>
        <translation>Frei</translation>
    </message>
    <message>
        <source>Solid</source>
        <translation>Gefüllt</translation>
    </message>
    <message>
        <source>Second solid</source>
        <translation>Zweite Füllung</translation>
    </message>
    <message>
        <source>%1: disc at %2, %3, radius %4</source>
        <translation>%1: Kreis bei (%2; %3), Radius %4</translation>
    </message>
    <message>
        <source>, with a hole of radius %1</source>
        <translation>, mit einem Loch vom Radius %1</translation>
    </message>
    <message>
        <source>%1: elements %2, %3</source>
        <translation>%1: Elemente %2, %3</translation>
    </message>
    <message>
        <source>%1: free form within %2, %3</source>
        <translation>%1: freie Form in %2, %3</translation>
    </message>
    <message>
        <source>Copy support</source>
        <translation>Lager kopieren</translation>
    </message>
    <message>
        <source>Iteration %1: %2</source>
        <translation>Iteration %1: %2</translation>
    </message>
    <message>
        <source> (%1, %2 mm)</source>
        <translation> (%1; %2 mm)</translation>
    </message>
    <message>
        <source>case %1</source>
        <translation>Lastfall %1</translation>
    </message>
    <message>
        <source>The design has torn: its material does not join the loads to the supports. Use more volume or a finer grid, or start afresh.</source>
        <translation>Der Entwurf ist zerrissen: Sein Material verbindet die Lasten nicht mit den Lagern. Wählen Sie mehr Volumen oder ein feineres Netz, oder beginnen Sie neu.</translation>
    </message>
    <message>
        <source>Case %1</source>
        <translation>Lastfall %1</translation>
    </message>
    <message>
        <source>, weight %1</source>
        <translation>, Gewicht %1</translation>
    </message>
    <message>
        <source>, not in use</source>
        <translation>, nicht berücksichtigt</translation>
    </message>
    <message>
        <source>, weighted sum of %1 load cases</source>
        <translation>, gewichtete Summe von %1 Lastfällen</translation>
    </message>
    <message numerus="yes">
        <source>%n piece(s) selected</source>
        <translation>
            <numerusform>%n Teil ausgewählt</numerusform>
            <numerusform>%n Teile ausgewählt</numerusform>
        </translation>
    </message>
    <message>
        <source>Copy area</source>
        <translation>Bereich kopieren</translation>
    </message>
    <message>
        <source>Copy selection</source>
        <translation>Auswahl kopieren</translation>
    </message>
    <message>
        <source>Move selection</source>
        <translation>Auswahl verschieben</translation>
    </message>
    <message>
        <source>Ctrl and a click or a drag</source>
        <translation>Strg und ein Klick oder Ziehen</translation>
    </message>
    <message>
        <source>Select several pieces, one by one or by a frame</source>
        <translation>Mehrere Teile auswählen, einzeln oder mit einem Rahmen</translation>
    </message>
</context>
<context>
    <name>ResultLine</name>
    <message>
        <source>The design does not hold as drawn</source>
        <translation>Der Entwurf hält so, wie er gezeichnet ist, nicht</translation>
    </message>
    <message>
        <source>Compliance as drawn %1  ·  Material %2</source>
        <translation>Nachgiebigkeit in Schwarzweiß %1  ·  Material %2</translation>
    </message>
    <message>
        <source>Iteration %1</source>
        <translation>Iteration %1</translation>
    </message>
    <message>
        <source>  ·  Compliance so far %1  ·  Material %2</source>
        <translation>  ·  Nachgiebigkeit bisher %1  ·  Material %2</translation>
    </message>
    <message numerus="yes">
        <source>%n second(s) on iteration %1</source>
        <translation>
            <numerusform>%n Sekunde an Iteration %1</numerusform>
            <numerusform>%n Sekunden an Iteration %1</numerusform>
        </translation>
    </message>
    <message>
        <source>Compliance is force times displacement, summed over the load cases: the smaller it is, the stiffer is the structure.</source>
        <translation>Die Nachgiebigkeit ist Kraft mal Verschiebung, summiert über die Lastfälle: Je kleiner sie ist, desto steifer ist das Tragwerk.</translation>
    </message>
    <message>
        <source> As drawn, each cell of the picture is either solid or void, and the picture is analysed cell by cell. The optimiser analyses elements, whose densities may lie in between: it found %1 at iteration %2.</source>
        <translation> In Schwarzweiß ist jede Zelle des Bildes entweder gefüllt oder leer, und das Bild wird Zelle für Zelle berechnet. Der Optimierer rechnet mit Elementen, deren Dichten auch dazwischen liegen können: Bei Iteration %2 fand er %1.</translation>
    </message>
    <message>
        <source>Not computed yet</source>
        <translation>Noch nicht berechnet</translation>
    </message>
    <message>
        <source>  ·  Play continues</source>
        <translation>  ·  Weiterrechnen setzt fort</translation>
    </message>
    <message>
        <source>  ·  Play starts afresh</source>
        <translation>  ·  Weiterrechnen beginnt neu</translation>
    </message>
    <message>
        <source>Scoring the design...</source>
        <translation>Der Entwurf wird bewertet …</translation>
    </message>
    <message>
        <source>The optimiser cannot go on</source>
        <translation>Der Optimierer kann nicht weiterrechnen</translation>
    </message>
    <message>
        <source>Forming: the optimiser improves the design. Settled: the compliance changed by no more than 0.1 % in the last 30 iterations, and the optimiser rests until you change something. Not settled: the optimiser stopped after 500 iterations, although the compliance still changes; Play continues. As kept: the design of a file or of a variant. The optimiser cannot continue it, and starts afresh.</source>
        <translation>Formt sich: Der Optimierer verbessert den Entwurf. Konvergiert: Die Nachgiebigkeit hat sich in den letzten 30 Iterationen um höchstens 0,1 % geändert, und der Optimierer ruht, bis Sie etwas ändern. Nicht konvergiert: Der Optimierer hat nach 500 Iterationen aufgehört, obwohl sich die Nachgiebigkeit noch ändert; Weiterrechnen setzt fort. Gemerkt: der Entwurf einer Datei oder einer Variante. Der Optimierer kann ihn nicht fortsetzen und beginnt neu.</translation>
    </message>
    <message>
        <source> Material is the share of the plate that is solid. It may differ a little from the volume you asked for, because the picture is a smoothed copy of the optimiser&apos;s densities.</source>
        <translation> Material ist der gefüllte Anteil der Scheibe. Er kann etwas vom gewünschten Volumen abweichen, weil das Bild eine geglättete Kopie der Dichten des Optimierers ist.</translation>
    </message>
    <message>
        <source>Compliance of the half as drawn %1  ·  Material %2</source>
        <translation>Nachgiebigkeit der Hälfte in Schwarzweiß %1  ·  Material %2</translation>
    </message>
    <message>
        <source>  ·  Compliance of the half so far %1  ·  Material %2</source>
        <translation>  ·  Nachgiebigkeit der Hälfte bisher %1  ·  Material %2</translation>
    </message>
    <message>
        <source> One half of the plate is computed: the whole carries twice the loads and has twice the compliance.</source>
        <translation> Berechnet wird eine Hälfte der Scheibe: Die ganze trägt die doppelten Lasten und hat die doppelte Nachgiebigkeit.</translation>
    </message>
</context>
<context>
    <name>Rooms</name>
    <message>
        <source>a volume of %1 % is enough for a bar %2 elements wide from load %3 to the nearest support, and such a thin design tears</source>
        <translation>ein Volumen von %1 % reicht für einen Stab von %2 Elementen Breite von Last %3 zum nächsten Lager, und ein so dünner Entwurf reißt</translation>
    </message>
    <message>
        <source>take more volume or a finer grid</source>
        <translation>mehr Volumen oder ein feineres Netz wählen</translation>
    </message>
    <message>
        <source>from iteration %1 on, %2</source>
        <translation>ab Iteration %1: %2</translation>
    </message>
    <message>
        <source>as drawn it is %1, %2 times the %3 while optimising</source>
        <translation>in Schwarzweiß beträgt sie %1, das %2-Fache von %3 beim Optimieren</translation>
    </message>
    <message>
        <source>as drawn, %1</source>
        <translation>in Schwarzweiß: %1</translation>
    </message>
    <message>
        <source>node %1 lies inside what is kept void</source>
        <translation>Knoten %1 liegt im freigehaltenen Bereich</translation>
    </message>
    <message>
        <source>what is kept void separates it from every support</source>
        <translation>der freigehaltene Bereich trennt sie von jedem Lager</translation>
    </message>
    <message>
        <source>none acts in load case %1</source>
        <translation>im Lastfall %1 wirkt keine Last</translation>
    </message>
    <message>
        <source>none acts in the load cases %1</source>
        <translation>in den Lastfällen %1 wirkt keine Last</translation>
    </message>
    <message>
        <source>the solid elements are %1 % of the plate, more than the volume %2 %</source>
        <translation>die gefüllten Elemente machen %1 % der Scheibe aus, mehr als das Volumen von %2 %</translation>
    </message>
    <message>
        <source>the void elements leave %1 % of the plate, less than the volume %2 %</source>
        <translation>die freigehaltenen Elemente lassen %1 % der Scheibe übrig, weniger als das Volumen von %2 %</translation>
    </message>
    <message>
        <source>needs about %1 GB of memory, and %2 GB are free</source>
        <translation>benötigt rund %1 GB Speicher, frei sind %2 GB</translation>
    </message>
    <message>
        <source>lower its width and height</source>
        <translation>Breite und Höhe verringern</translation>
    </message>
    <message>
        <source>lower the detail of the picture or the detail of the design</source>
        <translation>die Auflösung des Bildes oder des Entwurfs verringern</translation>
    </message>
    <message>
        <source>lower it</source>
        <translation>verringern Sie sie</translation>
    </message>
    <message>
        <source>score a coarser design</source>
        <translation>einen gröberen Entwurf bewerten</translation>
    </message>
    <message>
        <source>keep the elements at this load solid</source>
        <translation>die Elemente an dieser Last gefüllt halten</translation>
    </message>
    <message>
        <source>take a finer grid, more volume or more iterations</source>
        <translation>ein feineres Netz, mehr Volumen oder mehr Iterationen wählen</translation>
    </message>
    <message>
        <source>take a finer grid or more iterations</source>
        <translation>ein feineres Netz oder mehr Iterationen wählen</translation>
    </message>
    <message>
        <source>take a finer grid or more volume</source>
        <translation>ein feineres Netz oder mehr Volumen wählen</translation>
    </message>
    <message>
        <source>take a finer grid</source>
        <translation>ein feineres Netz wählen</translation>
    </message>
    <message>
        <source>some of its nodes may get no material</source>
        <translation>einige ihrer Knoten bekommen vielleicht kein Material</translation>
    </message>
    <message>
        <source>%1 is above %2 (below a volume of %3 %): the design may fall into dots that carry nothing</source>
        <translation>%1 liegt über %2 (bei einem Volumen unter %3 %): Der Entwurf kann in Punkte zerfallen, die nichts tragen</translation>
    </message>
    <message>
        <source>%1 is above %2: the design may fall into dots that carry nothing</source>
        <translation>%1 liegt über %2: Der Entwurf kann in Punkte zerfallen, die nichts tragen</translation>
    </message>
    <message>
        <source>set the detail of the design and the detail of the picture to %1, or take a finer grid or more iterations</source>
        <translation>die Auflösung des Entwurfs und des Bildes auf %1 setzen oder ein feineres Netz oder mehr Iterationen wählen</translation>
    </message>
    <message>
        <source>the design has %1 % as drawn instead of %2 %</source>
        <translation>der Entwurf hat in Schwarzweiß %1 % statt %2 %</translation>
    </message>
    <message>
        <source>the design has %1 % instead of %2 %</source>
        <translation>der Entwurf hat %1 % statt %2 %</translation>
    </message>
    <message>
        <source>there is no material</source>
        <translation>es gibt kein Material</translation>
    </message>
    <message>
        <source>act where nothing holds them</source>
        <translation>die Lasten wirken, wo nichts sie hält</translation>
    </message>
    <message>
        <source>its densities differ too much for an accurate analysis</source>
        <translation>die Dichten sind für eine genaue Berechnung zu verschieden</translation>
    </message>
    <message>
        <source>make the faintest void</source>
        <translation>die schwächsten entfernen</translation>
    </message>
    <message>
        <source>the plate is free to move: nothing is held</source>
        <translation>die Scheibe ist verschieblich: Es gibt kein Lager</translation>
    </message>
    <message>
        <source>the plate is free to move along %1: nothing is held in %2</source>
        <translation>die Scheibe ist in %1 verschieblich: In %2 ist nichts gelagert</translation>
    </message>
    <message>
        <source>the plate is free to turn: hold x in two rows of nodes, or y in two columns</source>
        <translation>die Scheibe kann sich drehen: x in zwei Knotenreihen oder y in zwei Knotenspalten lagern</translation>
    </message>
    <message>
        <source>the node %1 on the plane of symmetry is free in %2</source>
        <translation>der Knoten %1 auf der Symmetrieebene ist in %2 frei</translation>
    </message>
    <message>
        <source>hold the nodes of the left edge in x</source>
        <translation>die Knoten des linken Rands in x lagern</translation>
    </message>
    <message>
        <source>hold the nodes of the right edge in x</source>
        <translation>die Knoten des rechten Rands in x lagern</translation>
    </message>
    <message>
        <source>hold the nodes of the top edge in y</source>
        <translation>die Knoten des oberen Rands in y lagern</translation>
    </message>
    <message>
        <source>hold the nodes of the bottom edge in y</source>
        <translation>die Knoten des unteren Rands in y lagern</translation>
    </message>
    <message>
        <source>acts where a support holds the node in its direction, and does no work</source>
        <translation>sie wirkt, wo ein Lager den Knoten in ihrer Richtung hält, und leistet keine Arbeit</translation>
    </message>
    <message>
        <source>move the loads or the supports</source>
        <translation>die Lasten oder die Lager verschieben</translation>
    </message>
    <message>
        <source>is cancelled by others at its nodes</source>
        <translation>sie wird von anderen an ihren Knoten aufgehoben</translation>
    </message>
    <message>
        <source>nothing is left to carry</source>
        <translation>es bleibt nichts abzutragen</translation>
    </message>
    <message>
        <source>there is no force at all</source>
        <translation>es gibt keine Kraft</translation>
    </message>
    <message>
        <source>the largest force is %1, expected at least %2</source>
        <translation>die größte Kraft ist %1, erwartet wird mindestens %2</translation>
    </message>
    <message>
        <source>take a smaller unit of force</source>
        <translation>eine kleinere Krafteinheit wählen</translation>
    </message>
    <message>
        <source>none of them has a force</source>
        <translation>keiner von ihnen enthält eine Kraft</translation>
    </message>
    <message>
        <source>every force of load case %1 acts where a support holds the node in its direction, and does no work</source>
        <translation>jede Kraft von Lastfall %1 wirkt, wo ein Lager den Knoten in ihrer Richtung hält, und leistet keine Arbeit</translation>
    </message>
    <message>
        <source>every force of load case %1 is cancelled by others at its nodes</source>
        <translation>jede Kraft von Lastfall %1 wird von anderen an ihren Knoten aufgehoben</translation>
    </message>
    <message>
        <source>every force acts where a support holds the node in its direction, and does no work</source>
        <translation>jede Kraft wirkt, wo ein Lager den Knoten in ihrer Richtung hält, und leistet keine Arbeit</translation>
    </message>
    <message>
        <source>every force is cancelled by others at its nodes</source>
        <translation>jede Kraft wird von anderen an ihren Knoten aufgehoben</translation>
    </message>
    <message>
        <source>acts on a part that no support holds, at %1</source>
        <translation>sie wirkt auf ein Teil, das kein Lager hält, bei %1</translation>
    </message>
    <message>
        <source>acts on a part that can turn about the corner %1</source>
        <translation>sie wirkt auf ein Teil, das sich um die Ecke %1 drehen kann</translation>
    </message>
    <message>
        <source>join it along an edge</source>
        <translation>das Teil entlang einer Kante anschließen</translation>
    </message>
    <message>
        <source>the load is at %1</source>
        <translation>die Last ist bei %1</translation>
    </message>
    <message>
        <source>acts where there is no material, at %1</source>
        <translation>sie wirkt, wo kein Material ist, bei %1</translation>
    </message>
    <message>
        <source>no support holds %1 of it, %2 of the grid</source>
        <translation>kein Lager hält %1 davon, %2 des Netzes</translation>
    </message>
    <message>
        <source>the first at %1</source>
        <translation>der erste bei %1</translation>
    </message>
    <message>
        <source>1 part</source>
        <translation>einen Teil</translation>
    </message>
    <message>
        <source>%1 parts</source>
        <translation>%1 Teile</translation>
    </message>
    <message>
        <source>1 element</source>
        <translation>ein Element</translation>
    </message>
    <message>
        <source>%1 elements</source>
        <translation>%1 Elemente</translation>
    </message>
    <message>
        <source>refines the design to %1 x %2 cells</source>
        <translation>verfeinert den Entwurf auf %1 × %2 Zellen</translation>
    </message>
    <message>
        <source>refines the picture to %1 x %2 cells</source>
        <translation>verfeinert das Bild auf %1 × %2 Zellen</translation>
    </message>
    <message>
        <source>the limits are %1 cells, and %2 along a side</source>
        <translation>erlaubt sind %1 Zellen und %2 je Seite</translation>
    </message>
    <message>
        <source>the detail of the design (%1) and the detail of the picture (%2) must be equal if there are elements that are kept void or solid, or a blob</source>
        <translation>die Auflösung des Entwurfs (%1) und des Bildes (%2) müssen gleich sein, wenn Elemente frei oder gefüllt gehalten werden oder es eine Aussparung gibt</translation>
    </message>
    <message>
        <source>set the detail of the picture to %1</source>
        <translation>die Auflösung des Bildes auf %1 setzen</translation>
    </message>
    <message>
        <source>too many elements are kept void: %1</source>
        <translation>zu viele Elemente werden frei gehalten: %1</translation>
    </message>
    <message>
        <source>too many elements are kept solid: %1</source>
        <translation>zu viele Elemente werden gefüllt gehalten: %1</translation>
    </message>
    <message>
        <source>too many elements of the second kind are kept solid: %1</source>
        <translation>zu viele Elemente der zweiten Art werden gefüllt gehalten: %1</translation>
    </message>
    <message>
        <source>%1 elements, the limit is %2</source>
        <translation>%1 Elemente, erlaubt sind %2</translation>
    </message>
    <message>
        <source>%1 nodes in all, the limit is %2</source>
        <translation>%1 Knoten insgesamt, erlaubt sind %2</translation>
    </message>
    <message>
        <source>the title is longer than %1 characters</source>
        <translation>der Titel ist länger als %1 Zeichen</translation>
    </message>
    <message>
        <source>This is larger than the plate: use a finer grid first</source>
        <translation>Das ist größer als die Scheibe: zuerst ein feineres Netz wählen</translation>
    </message>
    <message>
        <source>This area has no elements on the plate</source>
        <translation>Dieser Bereich hat keine Elemente auf der Scheibe</translation>
    </message>
    <message>
        <source>keep the elements at this load solid, and set the detail of the design and the detail of the picture to %1</source>
        <translation>die Elemente an dieser Last gefüllt halten und die Auflösung des Entwurfs und des Bildes auf %1 setzen</translation>
    </message>
    <message>
        <source>keep the elements at this load solid, and set the detail of the picture to %1</source>
        <translation>die Elemente an dieser Last gefüllt halten und die Auflösung des Bildes auf %1 setzen</translation>
    </message>
    <message>
        <source>elements that are kept solid do not touch the structure: move them to it, or do not keep them solid</source>
        <translation>gefüllt gehaltene Elemente berühren das Tragwerk nicht: an das Tragwerk schieben oder nicht gefüllt halten</translation>
    </message>
    <message>
        <source>raise the penalty to 3: a low one leaves greys</source>
        <translation>die Bestrafung auf 3 erhöhen: eine niedrige lässt Grau stehen</translation>
    </message>
</context>
<context>
    <name>RunActions</name>
    <message>
        <source>S&amp;ingle step</source>
        <translation>&amp;Einzelschritt</translation>
    </message>
    <message>
        <source>Start &amp;afresh</source>
        <translation>&amp;Neu beginnen</translation>
    </message>
    <message>
        <source>One iteration, and then a pause</source>
        <translation>Eine Iteration, dann eine Pause</translation>
    </message>
    <message>
        <source>Begin again with a uniform design</source>
        <translation>Mit einem gleichmäßigen Entwurf neu beginnen</translation>
    </message>
    <message>
        <source>&amp;Pause</source>
        <translation>&amp;Anhalten</translation>
    </message>
    <message>
        <source>&amp;Play</source>
        <translation>&amp;Weiterrechnen</translation>
    </message>
    <message>
        <source>Hold the design</source>
        <translation>Den Entwurf anhalten</translation>
    </message>
    <message>
        <source>Let the design form</source>
        <translation>Den Entwurf sich formen lassen</translation>
    </message>
    <message>
        <source>Let a design form afresh: the optimiser cannot continue a kept one</source>
        <translation>Einen Entwurf neu formen lassen: Einen gemerkten kann der Optimierer nicht fortsetzen</translation>
    </message>
</context>
<context>
    <name>ScenePanel</name>
    <message>
        <source>Texts</source>
        <translation>Texte</translation>
    </message>
    <message>
        <source>Title of the scene</source>
        <translation>Titel der Szene</translation>
    </message>
    <message>
        <source>Description of the scene</source>
        <translation>Beschreibung der Szene</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>Titel</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>It is drawn above exported pictures. This is the text of the file, in its own language.</source>
        <translation>Er steht über exportierten Bildern. Hier steht der Text der Datei in ihrer eigenen Sprache.</translation>
    </message>
    <message>
        <source>What the scene is about. It is shown above the plate. This is the text of the file, in its own language.</source>
        <translation>Worum es in der Szene geht. Die Beschreibung steht über der Scheibe. Hier steht der Text der Datei in ihrer eigenen Sprache.</translation>
    </message>
    <message>
        <source>Change title</source>
        <translation>Titel ändern</translation>
    </message>
    <message>
        <source>Change description</source>
        <translation>Beschreibung ändern</translation>
    </message>
    <message>
        <source>Plate</source>
        <translation>Scheibe</translation>
    </message>
    <message>
        <source> mm</source>
        <translation> mm</translation>
    </message>
    <message>
        <source>Edge of an element in millimetres</source>
        <translation>Kante eines Elements in Millimetern</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>at the left edge</source>
        <translation>am linken Rand</translation>
    </message>
    <message>
        <source>at the right edge</source>
        <translation>am rechten Rand</translation>
    </message>
    <message>
        <source>at the top edge</source>
        <translation>am oberen Rand</translation>
    </message>
    <message>
        <source>at the bottom edge</source>
        <translation>am unteren Rand</translation>
    </message>
    <message>
        <source>Plane of symmetry</source>
        <translation>Symmetrieebene</translation>
    </message>
    <message>
        <source>Element</source>
        <translation>Element</translation>
    </message>
    <message>
        <source>Whole plate</source>
        <translation>Ganze Scheibe</translation>
    </message>
    <message>
        <source>Symmetry</source>
        <translation>Symmetrie</translation>
    </message>
    <message>
        <source>Edge of an element in millimetres, for outlines, solids and stresses. It changes no compliance. Forces are in a unit of your choice, such as newtons.</source>
        <translation>Kantenlänge eines Elements in Millimetern, für Umrisse, Körper und Spannungen. Sie ändert keine Nachgiebigkeit. Kräfte haben eine Einheit nach Wahl, etwa Newton.</translation>
    </message>
    <message>
        <source>Edit and compute one half of a plate that is symmetric to one of its edges. The nodes of that edge are held. Pictures and exports show the whole plate. Of a force on the plane of symmetry give one half.</source>
        <translation>Eine Hälfte einer Scheibe bearbeiten und berechnen, die zu einem ihrer Ränder symmetrisch ist. Die Knoten dieses Randes werden gehalten. Bilder und Exporte zeigen die ganze Scheibe. Von einer Kraft auf der Symmetrieebene ist die Hälfte anzugeben.</translation>
    </message>
    <message>
        <source>Change element size</source>
        <translation>Elementgröße ändern</translation>
    </message>
    <message>
        <source>Change symmetry</source>
        <translation>Symmetrie ändern</translation>
    </message>
    <message>
        <source>%1 × %2 mm</source>
        <translation>%1 × %2 mm</translation>
    </message>
</context>
<context>
    <name>Scenes</name>
    <message>
        <source>Viaduct</source>
        <translation>Viadukt</translation>
    </message>
    <message>
        <source>An arch below a road, painted as a grey picture: black is solid, white is void.</source>
        <translation>Ein Bogen unter einer Straße, als Graustufenbild gemalt: Schwarz ist Material, Weiß ist leer.</translation>
    </message>
    <message>
        <source>Bridge with two load cases</source>
        <translation>Brücke mit zwei Lastfällen</translation>
    </message>
    <message>
        <source>A deck that stays solid is loaded on one half at a time; the design grows above it.</source>
        <translation>Eine feste Fahrbahn wird auf je einer Hälfte belastet; der Entwurf wächst darüber.</translation>
    </message>
    <message>
        <source>Bridge</source>
        <translation>Brücke</translation>
    </message>
    <message>
        <source>A tied arch whose deck is loaded on one half at a time, a load case each.</source>
        <translation>Ein Stabbogen, dessen Fahrbahn auf je einer Hälfte belastet wird – je ein Lastfall.</translation>
    </message>
    <message>
        <source>Cantilever</source>
        <translation>Kragscheibe</translation>
    </message>
    <message>
        <source>A wall bracket of curved bars that carries a weight at the middle of its free end.</source>
        <translation>Eine Wandkonsole aus gebogenen Stäben, die in der Mitte des freien Endes eine Last trägt.</translation>
    </message>
    <message>
        <source>Beam on two supports</source>
        <translation>Träger auf zwei Stützen</translation>
    </message>
    <message>
        <source>The right half of a beam that carries a load at its middle; the left edge is the plane of symmetry.</source>
        <translation>Die rechte Hälfte eines Trägers mit einer Last in der Mitte; der linke Rand ist die Symmetrieebene.</translation>
    </message>
    <message>
        <source>Plate with a hole</source>
        <translation>Scheibe mit Loch</translation>
    </message>
    <message>
        <source>A sheet pulled to the right: the rim of the hole above and below works hardest.</source>
        <translation>Eine nach rechts gezogene Scheibe: Oben und unten ist der Lochrand am stärksten beansprucht.</translation>
    </message>
    <message>
        <source>L-bracket</source>
        <translation>L-Konsole</translation>
    </message>
    <message>
        <source>A bracket below a ceiling that has to leave the upper right corner free.</source>
        <translation>Eine Konsole unter einer Decke, die die Ecke oben rechts frei lassen muss.</translation>
    </message>
    <message>
        <source>The smallest scene that shows every required key.</source>
        <translation>Die kleinste Szene, die jeden nötigen Schlüssel zeigt.</translation>
    </message>
    <message>
        <source>Moving load</source>
        <translation>Wandernde Last</translation>
    </message>
    <message>
        <source>A load moves across a beam in five steps, and the design follows it.</source>
        <translation>Eine Last überquert einen Träger in fünf Schritten, und der Entwurf folgt ihr.</translation>
    </message>
    <message>
        <source>The stiffest wall bracket for a weight at its tip, made of two fifths of the plate.</source>
        <translation>Die steifste Wandkonsole für eine Last an ihrer Spitze, aus zwei Fünfteln der Scheibe.</translation>
    </message>
    <message>
        <source>Pipe through a bracket</source>
        <translation>Rohr durch eine Konsole</translation>
    </message>
    <message>
        <source>A pipe starts where the upper chord wants to be. If the blob may move, it moves and bends into a hole.</source>
        <translation>Ein Rohr beginnt, wo der Obergurt sein will; mit „Aussparung wandert“ zieht es in eine Öffnung.</translation>
    </message>
    <message>
        <source>Beam on rollers</source>
        <translation>Träger auf Rollen</translation>
    </message>
    <message>
        <source>Both ends may roll: nothing stops the beam from sliding sideways, so it cannot be scored.</source>
        <translation>Beide Enden können rollen: Nichts hält den Träger seitlich, darum lässt er sich nicht bewerten.</translation>
    </message>
    <message>
        <source>Wheel</source>
        <translation>Rad</translation>
    </message>
    <message>
        <source>A solid rim and a solid hub; the ground pushes and drags at the rim from six sides, a load case each.</source>
        <translation>Eine feste Felge und eine feste Nabe; der Boden drückt und zieht von sechs Seiten an der Felge, je ein Lastfall.</translation>
    </message>
</context>
<context>
    <name>ScoreHeader</name>
    <message>
        <source>material used of the budget</source>
        <translation>verbrauchtes Material vom Vorrat</translation>
    </message>
    <message>
        <source>Material %1 of %2</source>
        <translation>Material %1 von %2</translation>
    </message>
</context>
<context>
    <name>SettingsPanel</name>
    <message>
        <source>Plate %1 × %2 mm, elements of %3 mm</source>
        <translation>Platte %1 × %2 mm, Elemente von %3 mm</translation>
    </message>
    <message>
        <source>Design</source>
        <translation>Entwurf</translation>
    </message>
    <message>
        <source>Vo&amp;lume</source>
        <translation>V&amp;olumen</translation>
    </message>
    <message>
        <source>&amp;Penalty</source>
        <translation>&amp;Strafexponent</translation>
    </message>
    <message>
        <source>How much material the structure may have, in percent of the plate. Less material makes a lighter and less stiff structure.</source>
        <translation>Wie viel Material das Tragwerk haben darf, in Prozent der Scheibe. Weniger Material ergibt ein leichteres, weniger steifes Tragwerk.</translation>
    </message>
    <message>
        <source>How strongly the optimiser avoids grey, which is neither material nor void. At 1 grey costs nothing; 3 gives nearly black and white designs.</source>
        <translation>Wie stark der Optimierer Grau vermeidet, das weder Material noch Leere ist. Bei 1 kostet Grau nichts; 3 ergibt nahezu schwarzweiße Entwürfe.</translation>
    </message>
    <message>
        <source>The blob is a hole of fixed size. If it moves, it drifts to where material is least useful.</source>
        <translation>Die Aussparung ist ein Loch von fester Größe. Wenn sie wandert, zieht sie dorthin, wo Material am wenigsten nützt.</translation>
    </message>
    <message>
        <source>Volume of material in percent</source>
        <translation>Volumen des Materials in Prozent</translation>
    </message>
    <message>
        <source>Penalty</source>
        <translation>Strafexponent</translation>
    </message>
    <message>
        <source>Change penalty</source>
        <translation>Strafexponent ändern</translation>
    </message>
    <message>
        <source>&amp;Blob moves</source>
        <translation>Aussparung wa&amp;ndert</translation>
    </message>
    <message>
        <source>Grid</source>
        <translation>Netz</translation>
    </message>
    <message>
        <source>Elements in x</source>
        <translation>Elemente in x</translation>
    </message>
    <message>
        <source>Elements in y</source>
        <translation>Elemente in y</translation>
    </message>
    <message>
        <source>Detail of the design</source>
        <translation>Auflösung des Entwurfs</translation>
    </message>
    <message>
        <source>Detail of the picture</source>
        <translation>Auflösung des Bildes</translation>
    </message>
    <message>
        <source>Apply and start &amp;afresh</source>
        <translation>Übernehmen und neu be&amp;ginnen</translation>
    </message>
    <message>
        <source>&amp;Width</source>
        <translation>Brei&amp;te</translation>
    </message>
    <message>
        <source>Hei&amp;ght</source>
        <translation>Höh&amp;e</translation>
    </message>
    <message>
        <source>&amp;Detail of the design</source>
        <translation>Auflösung Entw&amp;urf</translation>
    </message>
    <message>
        <source>Detail of the p&amp;icture</source>
        <translation>Auflösung B&amp;ild</translation>
    </message>
    <message>
        <source>Elements from left to right. More elements show finer bars, and each iteration takes longer.</source>
        <translation>Elemente von links nach rechts. Mehr Elemente zeigen feinere Stäbe, und jede Iteration dauert länger.</translation>
    </message>
    <message>
        <source>Elements from top to bottom.</source>
        <translation>Elemente von oben nach unten.</translation>
    </message>
    <message>
        <source>Cells of the design per edge of an element. At 2 each element has four cells that may be solid or void.</source>
        <translation>Zellen des Entwurfs je Elementkante. Bei 2 hat jedes Element vier Zellen, die gefüllt oder leer sein können.</translation>
    </message>
    <message>
        <source>Cells of the picture per edge of a cell of the design. More of them make edges smoother and do not change the structure. The compliance as drawn changes a little, because it is computed from the picture.</source>
        <translation>Zellen des Bildes je Kante einer Zelle des Entwurfs. Mehr davon glätten die Ränder und ändern das Tragwerk nicht. Die Nachgiebigkeit in Schwarzweiß ändert sich etwas, weil sie aus dem Bild berechnet wird.</translation>
    </message>
    <message>
        <source>Change volume</source>
        <translation>Volumen ändern</translation>
    </message>
    <message>
        <source>An iteration will take about %1 seconds.</source>
        <translation>Eine Iteration wird rund %1 Sekunden dauern.</translation>
    </message>
    <message>
        <source>Change grid</source>
        <translation>Netz ändern</translation>
    </message>
    <message>
        <source>Gives the plate the grid and the details of this group. The design then forms anew, from an even grey.</source>
        <translation>Gibt der Scheibe das Netz und die Auflösungen dieser Gruppe. Der Entwurf formt sich dann neu, aus einem gleichmäßigen Grau.</translation>
    </message>
</context>
<context>
    <name>ShortcutDialog</name>
    <message>
        <source>Keyboard shortcuts</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>On the plate</source>
        <translation>Auf der Scheibe</translation>
    </message>
</context>
<context>
    <name>StartHere</name>
    <message>
        <source>&amp;Start here</source>
        <translation>&amp;Hier anfangen</translation>
    </message>
    <message>
        <source>A tour of five steps</source>
        <translation>Eine Führung in fünf Schritten</translation>
    </message>
    <message>
        <source>Welcome to Voxam Live</source>
        <translation>Willkommen bei Voxam Live</translation>
    </message>
    <message>
        <source>New here? A tour of five steps shows what you can do. It takes two minutes, and it waits in the Help menu.</source>
        <translation>Neu hier? Eine Führung in fünf Schritten zeigt, was möglich ist. Sie dauert zwei Minuten und ist im Menü „Hilfe“ zu finden.</translation>
    </message>
    <message>
        <source>Drag the arrow</source>
        <translation>Am Pfeil ziehen</translation>
    </message>
    <message>
        <source>The arrow is a force on the plate. Drag either of its ends, and watch the stiffest structure form anew.</source>
        <translation>Der Pfeil ist eine Kraft auf die Scheibe. Ziehen Sie an einem seiner Enden und sehen Sie zu, wie sich das steifste Tragwerk neu formt.</translation>
    </message>
    <message>
        <source>Change the volume</source>
        <translation>Das Volumen ändern</translation>
    </message>
    <message>
        <source>The volume is how much of the plate may be material. Move the slider to spend less of it, or more.</source>
        <translation>Das Volumen gibt an, wie viel der Scheibe Material sein darf. Verschieben Sie den Regler, um weniger oder mehr zu verwenden.</translation>
    </message>
    <message>
        <source>Keep a place free</source>
        <translation>Eine Stelle frei halten</translation>
    </message>
    <message>
        <source>Take up this tool, and paint over a bar of the structure. Material has to find a way around what you paint.</source>
        <translation>Nehmen Sie dieses Werkzeug und übermalen Sie einen Stab des Tragwerks. Das Material muss sich einen Weg um die bemalte Stelle suchen.</translation>
    </message>
    <message>
        <source>Draw a structure yourself</source>
        <translation>Selbst ein Tragwerk zeichnen</translation>
    </message>
    <message>
        <source>Press this button. Then draw bars from the left edge to the arrow, and see how stiff they are next to the optimiser&apos;s.</source>
        <translation>Drücken Sie diesen Knopf. Zeichnen Sie dann Stäbe vom linken Rand zum Pfeil und vergleichen Sie ihre Steifigkeit mit der des Optimierers.</translation>
    </message>
    <message>
        <source>Choose another plate</source>
        <translation>Eine andere Scheibe wählen</translation>
    </message>
    <message>
        <source>The gallery has scenes to play with, to understand, to design and to draw. Press this button to look at them.</source>
        <translation>Die Galerie bietet Szenen zum Spielen, Verstehen, Entwerfen und Zeichnen. Dieser Knopf öffnet sie.</translation>
    </message>
</context>
<context>
    <name>TimelineStrip</name>
    <message>
        <source>Timeline</source>
        <translation>Zeitplan</translation>
    </message>
    <message>
        <source>Iteration %1, %2 of %3 changes made</source>
        <translation>Iteration %1, %2 von %3 Änderungen ausgeführt</translation>
    </message>
    <message>
        <source>The scene&apos;s timeline: each mark is a change</source>
        <translation>Der Zeitplan der Szene: jede Marke ist eine Änderung</translation>
    </message>
    <message>
        <source>The timeline changes the scene while the optimiser runs: it may move a load, for example. Each mark is the iteration of a change.</source>
        <translation>Der Zeitplan ändert die Szene, während der Optimierer läuft; er kann zum Beispiel eine Last verschieben. Jede Marke ist die Iteration einer Änderung.</translation>
    </message>
</context>
<context>
    <name>ToolBox</name>
    <message>
        <source>Mirror left and right</source>
        <translation>Links und rechts spiegeln</translation>
    </message>
    <message>
        <source>Draw the same on the other side of the middle</source>
        <translation>Dasselbe auf der anderen Seite der Mitte zeichnen</translation>
    </message>
    <message>
        <source>Mirror top and bottom</source>
        <translation>Oben und unten spiegeln</translation>
    </message>
    <message>
        <source>Draw the same above and below the middle</source>
        <translation>Dasselbe oberhalb und unterhalb der Mitte zeichnen</translation>
    </message>
    <message>
        <source>Select and drag</source>
        <translation>Auswählen und ziehen</translation>
    </message>
    <message>
        <source>Drag loads, supports and kept areas, with Alt copies of them. The other end of an arrow turns and scales the load. Ctrl selects several, by clicks or by a frame. Keys: N selects the next one, arrows move it, Alt with arrows turns and scales a load</source>
        <translation>Lasten, Lager und vorgegebene Bereiche ziehen, mit Alt eine Kopie. Das andere Ende eines Pfeils dreht und skaliert die Last. Strg wählt mehrere aus, mit Klicks oder einem Rahmen. Tasten: N wählt das Nächste, Pfeiltasten verschieben es, Alt mit Pfeiltasten dreht und skaliert eine Last</translation>
    </message>
    <message>
        <source>Add load</source>
        <translation>Last hinzufügen</translation>
    </message>
    <message>
        <source>Press at a node, and drag to where the load pulls</source>
        <translation>An einem Knoten drücken und dorthin ziehen, wohin die Last zieht</translation>
    </message>
    <message>
        <source>Support</source>
        <translation>Lager</translation>
    </message>
    <message>
        <source>Hold nodes in both directions</source>
        <translation>Knoten in beiden Richtungen halten</translation>
    </message>
    <message>
        <source>Support in x</source>
        <translation>Lager in x</translation>
    </message>
    <message>
        <source>Hold nodes in x; they may slide up and down</source>
        <translation>Knoten in x halten; sie dürfen auf und ab gleiten</translation>
    </message>
    <message>
        <source>Support in y</source>
        <translation>Lager in y</translation>
    </message>
    <message>
        <source>Hold nodes in y; they may slide sideways</source>
        <translation>Knoten in y halten; sie dürfen seitlich gleiten</translation>
    </message>
    <message>
        <source>Keep void</source>
        <translation>Frei halten</translation>
    </message>
    <message>
        <source>Elements that stay empty</source>
        <translation>Elemente, die leer bleiben</translation>
    </message>
    <message>
        <source>Keep solid</source>
        <translation>Gefüllt halten</translation>
    </message>
    <message>
        <source>Elements that stay solid</source>
        <translation>Elemente, die gefüllt bleiben</translation>
    </message>
    <message>
        <source>Keep second solid</source>
        <translation>Gefüllt halten (zweite Art)</translation>
    </message>
    <message>
        <source>Elements that stay solid, of a second kind</source>
        <translation>Elemente einer zweiten Art, die gefüllt bleiben</translation>
    </message>
    <message>
        <source>Blob</source>
        <translation>Aussparung</translation>
    </message>
    <message>
        <source>A hole that keeps its size and, when it moves, finds its place</source>
        <translation>Ein Loch, das seine Größe behält und, wenn es wandert, seinen Platz findet</translation>
    </message>
    <message>
        <source>Erase</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Draw</source>
        <translation>Zeichnen</translation>
    </message>
    <message>
        <source>Draw material with the brush</source>
        <translation>Material mit dem Pinsel zeichnen</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Linie</translation>
    </message>
    <message>
        <source>Draw a straight bar, as thick as the brush</source>
        <translation>Einen geraden Stab zeichnen, so dick wie der Pinsel</translation>
    </message>
    <message>
        <source>Rub out</source>
        <translation>Radieren</translation>
    </message>
    <message>
        <source>Take material away with the brush; so does the right button</source>
        <translation>Material mit dem Pinsel wegnehmen; auch mit der rechten Maustaste</translation>
    </message>
    <message>
        <source>Take away loads, supports, kept elements and blob</source>
        <translation>Lasten, Lager, vorgegebene Elemente und die Aussparung entfernen</translation>
    </message>
</context>
<context>
    <name>Tour</name>
    <message>
        <source>Not now</source>
        <translation>Jetzt nicht</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Beginnen</translation>
    </message>
    <message>
        <source>Skip the tour</source>
        <translation>Führung beenden</translation>
    </message>
    <message>
        <source>%1 of %2: %3</source>
        <translation>%1 von %2: %3</translation>
    </message>
    <message>
        <source>Finish</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Weiter</translation>
    </message>
</context>
<context>
    <name>Variant</name>
    <message>
        <source>Does not hold</source>
        <translation>Hält nicht</translation>
    </message>
    <message>
        <source>Not scored yet</source>
        <translation>Noch nicht bewertet</translation>
    </message>
    <message>
        <source>Material %1</source>
        <translation>Material %1</translation>
    </message>
    <message>
        <source>The plates, loads or supports differ, so the compliances cannot be compared.</source>
        <translation>Scheiben, Lasten oder Lager unterscheiden sich; die Nachgiebigkeiten sind nicht vergleichbar.</translation>
    </message>
    <message>
        <source>A design that does not hold cannot be compared.</source>
        <translation>Ein Entwurf, der nicht hält, ist nicht vergleichbar.</translation>
    </message>
    <message>
        <source>Both are equally stiff.</source>
        <translation>Beide sind gleich steif.</translation>
    </message>
    <message>
        <source>%1 is %2 stiffer.</source>
        <translation>%1 ist %2 steifer.</translation>
    </message>
    <message>
        <source>They have as much material.</source>
        <translation>Sie haben gleich viel Material.</translation>
    </message>
    <message>
        <source>%1 has more material, by %2 of the plate.</source>
        <translation>%1 hat mehr Material, um %2 der Scheibe.</translation>
    </message>
</context>
<context>
    <name>VariantComparison</name>
    <message>
        <source>Compare variants</source>
        <translation>Varianten vergleichen</translation>
    </message>
</context>
<context>
    <name>VariantKeeper</name>
    <message>
        <source>The variant replaces your drawing. Undo brings it back.</source>
        <translation>Die Variante ersetzt Ihre Zeichnung. „Rückgängig“ holt sie zurück.</translation>
    </message>
    <message>
        <source>&amp;Keep variant</source>
        <translation>Variante &amp;merken</translation>
    </message>
    <message>
        <source>Keep the present design, to compare it or to return to it</source>
        <translation>Den jetzigen Entwurf merken, um ihn zu vergleichen oder zu ihm zurückzukehren</translation>
    </message>
    <message>
        <source>There is no design yet: let it form, or draw one</source>
        <translation>Es gibt noch keinen Entwurf: sich formen lassen oder zeichnen</translation>
    </message>
    <message>
        <source>Restore variant</source>
        <translation>Variante wiederherstellen</translation>
    </message>
</context>
<context>
    <name>VariantStrip</name>
    <message>
        <source>&amp;Restore variant</source>
        <translation>Variante &amp;wiederherstellen</translation>
    </message>
    <message>
        <source>&amp;Compare two variants...</source>
        <translation>Zwei Varianten &amp;vergleichen …</translation>
    </message>
    <message>
        <source>Re&amp;name variant...</source>
        <translation>Variante &amp;umbenennen …</translation>
    </message>
    <message>
        <source>R&amp;emove variants...</source>
        <translation>Varianten &amp;entfernen …</translation>
    </message>
    <message>
        <source>Remove variants?</source>
        <translation>Varianten entfernen?</translation>
    </message>
    <message numerus="yes">
        <source>Remove %n variant(s)? This cannot be undone.</source>
        <translation>
            <numerusform>%n Variante entfernen? Das lässt sich nicht rückgängig machen.</numerusform>
            <numerusform>%n Varianten entfernen? Das lässt sich nicht rückgängig machen.</numerusform>
        </translation>
    </message>
    <message>
        <source>Variants</source>
        <translation>Varianten</translation>
    </message>
    <message>
        <source>Show the selected variant on the plate again</source>
        <translation>Die ausgewählte Variante wieder auf der Scheibe zeigen</translation>
    </message>
    <message>
        <source>Show two selected variants side by side</source>
        <translation>Zwei ausgewählte Varianten nebeneinander zeigen</translation>
    </message>
    <message>
        <source>Remove the selected variants</source>
        <translation>Die ausgewählten Varianten entfernen</translation>
    </message>
    <message>
        <source>Variant %1</source>
        <translation>Variante %1</translation>
    </message>
    <message>
        <source>Double-click to restore. F2 renames, Delete removes. Select two with Ctrl to compare them.</source>
        <translation>Doppelklick stellt wieder her. F2 benennt um, Entf entfernt. Zwei mit Strg auswählen, um sie zu vergleichen.</translation>
    </message>
    <message>
        <source>Rename variant</source>
        <translation>Variante umbenennen</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation>Name:</translation>
    </message>
</context>
<context>
    <name>ViewActions</name>
    <message>
        <source>Zoom &amp;in</source>
        <translation>Ver&amp;größern</translation>
    </message>
    <message>
        <source>Zoom &amp;out</source>
        <translation>Ver&amp;kleinern</translation>
    </message>
    <message>
        <source>&amp;Whole plate</source>
        <translation>Ganze &amp;Scheibe</translation>
    </message>
    <message>
        <source>&amp;Full screen</source>
        <translation>&amp;Vollbild</translation>
    </message>
    <message>
        <source>Show the whole plate; the wheel zooms, the middle button moves it</source>
        <translation>Die ganze Scheibe zeigen; das Rad vergrößert, die mittlere Maustaste verschiebt</translation>
    </message>
    <message>
        <source>Colours of the des&amp;ktop</source>
        <translation>Farben der &amp;Arbeitsfläche</translation>
    </message>
    <message>
        <source>&amp;Light</source>
        <translation>&amp;Hell</translation>
    </message>
    <message>
        <source>&amp;Dark</source>
        <translation>&amp;Dunkel</translation>
    </message>
</context>
<context>
    <name>Workbench</name>
    <message>
        <source>Delete load</source>
        <translation>Last löschen</translation>
    </message>
    <message>
        <source>Delete support</source>
        <translation>Lager löschen</translation>
    </message>
    <message>
        <source>Delete area</source>
        <translation>Bereich löschen</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Copy mirrored</source>
        <translation>Gespiegelt kopieren</translation>
    </message>
    <message>
        <source>Mirror</source>
        <translation>Spiegeln</translation>
    </message>
    <message>
        <source>Delete selection</source>
        <translation>Auswahl löschen</translation>
    </message>
    <message>
        <source>Move selection</source>
        <translation>Auswahl verschieben</translation>
    </message>
    <message>
        <source>Move load</source>
        <translation>Last verschieben</translation>
    </message>
    <message>
        <source>Move support</source>
        <translation>Lager verschieben</translation>
    </message>
    <message>
        <source>Move area</source>
        <translation>Bereich verschieben</translation>
    </message>
</context>
<context>
    <name>FieldLegend</name>
    <message>
        <source>The density of a cell: 0 is void, 1 is solid. Greys lie in between.</source>
        <translation>Die Dichte einer Zelle: 0 ist leer, 1 ist gefüllt. Grautöne liegen dazwischen.</translation>
    </message>
    <message>
        <source>The energy of a cell is its share of the compliance. The colours show it as a multiple of the average over the whole plate, including its void cells.</source>
        <translation>Die Energie einer Zelle ist ihr Anteil an der Nachgiebigkeit. Die Farben zeigen sie als Vielfaches des Durchschnitts der ganzen Scheibe, auch der leeren Zellen.</translation>
    </message>
    <message>
        <source>The von Mises stress combines tension, compression and shear into one number. For another thickness, divide it by the thickness in mm.</source>
        <translation>Die Von-Mises-Spannung fasst Zug, Druck und Schub zu einer Zahl zusammen. Bei einer anderen Dicke ist sie durch die Dicke in mm zu teilen.</translation>
    </message>
</context>
</TS>
