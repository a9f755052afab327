<?xml version="1.0" encoding="UTF-8"?>
<!-- The header of a DICOM file as a web page: patient, study, series and object on top, then every
     element in a table of its group. Sequences fold; they are open at first, so that the browser's
     search and its print-out reach all of them. The page needs nothing beside itself.

     All white space that is written stands in select attributes: some XML libraries drop text nodes
     of white space alone when they load a stylesheet. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:output method="html" encoding="UTF-8" indent="no" doctype-system="about:legacy-compat"/>

  <xsl:key name="group" match="/data-set/tag" use="@grp"/>
  <!-- Of the data set itself, not of items. -->
  <xsl:key name="top" match="/data-set/tag" use="concat(@grp, @element)"/>

  <xsl:variable name="lower" select="'abcdefghijklmnopqrstuvwxyz'"/>
  <xsl:variable name="upper" select="'ABCDEFGHIJKLMNOPQRSTUVWXYZ'"/>

  <!-- The elements ascend, so those of a group stand together. -->
  <xsl:variable name="firstOfGroups"
                select="/data-set/tag[@grp != string(preceding-sibling::*[1]/@grp)]"/>
  <xsl:variable name="patientName">
    <xsl:call-template name="personName">
      <xsl:with-param name="name" select="key('top', '00100010')"/>
    </xsl:call-template>
  </xsl:variable>
  <xsl:variable name="studyDate">
    <xsl:call-template name="date">
      <xsl:with-param name="date" select="key('top', '00080020')"/>
    </xsl:call-template>
  </xsl:variable>

  <xsl:template match="/">
    <html lang="en">
      <head>
        <title>
          <xsl:value-of select="$patientName"/>
          <xsl:if test="$patientName = ''">DICOM header</xsl:if>
          <xsl:call-template name="titlePart">
            <xsl:with-param name="text" select="key('top', '00080060')"/>
          </xsl:call-template>
          <xsl:call-template name="titlePart">
            <xsl:with-param name="text" select="$studyDate"/>
          </xsl:call-template>
        </title>
        <meta name="viewport" content="width=device-width, initial-scale=1"/>
        <style>
          <xsl:call-template name="styles"/>
        </style>
      </head>
      <body>
        <xsl:if test="/data-set/@above">
          <nav class="above" aria-label="Medium">
            <a href="{/data-set/@above}">Back to the study</a>
          </nav>
        </xsl:if>
        <xsl:call-template name="summary"/>
        <xsl:call-template name="contents"/>
        <main>
          <xsl:for-each select="$firstOfGroups">
            <section id="g{@grp}">
              <h2>
                <xsl:call-template name="groupName"/>
                <xsl:value-of select="' '"/>
                <span class="grp"><xsl:value-of select="@grp"/></span>
              </h2>
              <xsl:call-template name="table">
                <xsl:with-param name="tags" select="key('group', @grp)"/>
              </xsl:call-template>
            </section>
          </xsl:for-each>
        </main>
      </body>
    </html>
  </xsl:template>

  <xsl:template name="titlePart">
    <xsl:param name="text"/>
    <xsl:if test="string($text) != ''">
      <xsl:value-of select="concat(' &#8211; ', $text)"/>
    </xsl:if>
  </xsl:template>

  <!-- ==== Patient, study, series and object ==== -->

  <xsl:template name="summary">
    <header>
      <h1>
        <xsl:value-of select="$patientName"/>
        <xsl:if test="$patientName = ''">No patient name</xsl:if>
      </h1>
      <p class="patient">
        <xsl:call-template name="inline">
          <xsl:with-param name="label" select="'ID'"/>
          <xsl:with-param name="text" select="key('top', '00100020')"/>
        </xsl:call-template>
        <xsl:call-template name="inline">
          <xsl:with-param name="label" select="'Born'"/>
          <xsl:with-param name="text">
            <xsl:call-template name="date">
              <xsl:with-param name="date" select="key('top', '00100030')"/>
            </xsl:call-template>
          </xsl:with-param>
        </xsl:call-template>
        <xsl:call-template name="inline">
          <xsl:with-param name="label" select="'Age'"/>
          <xsl:with-param name="text">
            <xsl:call-template name="age"/>
          </xsl:with-param>
        </xsl:call-template>
        <xsl:call-template name="inline">
          <xsl:with-param name="label" select="'Sex'"/>
          <xsl:with-param name="text">
            <xsl:call-template name="sex"/>
          </xsl:with-param>
        </xsl:call-template>
      </p>
      <div class="cards">
        <xsl:call-template name="studyCard"/>
        <xsl:call-template name="seriesCard"/>
        <xsl:call-template name="objectCard"/>
      </div>
    </header>
  </xsl:template>

  <xsl:template name="studyCard">
    <div class="card">
      <h2>Study</h2>
      <dl>
        <xsl:call-template name="fact">
          <xsl:with-param name="label" select="'Description'"/>
          <xsl:with-param name="text" select="key('top', '00081030')"/>
        </xsl:call-template>
        <xsl:call-template name="fact">
          <xsl:with-param name="label" select="'Date'"/>
          <xsl:with-param name="text">
            <xsl:value-of select="$studyDate"/>
            <xsl:call-template name="time">
              <xsl:with-param name="time" select="key('top', '00080030')"/>
            </xsl:call-template>
          </xsl:with-param>
        </xsl:call-template>
        <xsl:call-template name="fact">
          <xsl:with-param name="label" select="'Accession'"/>
          <xsl:with-param name="text" select="key('top', '00080050')"/>
        </xsl:call-template>
        <xsl:call-template name="fact">
          <xsl:with-param name="label" select="'Study ID'"/>
          <xsl:with-param name="text" select="key('top', '00200010')"/>
        </xsl:call-template>
        <xsl:call-template name="fact">
          <xsl:with-param name="label" select="'Referrer'"/>
          <xsl:with-param name="text">
            <xsl:call-template name="personName">
              <xsl:with-param name="name" select="key('top', '00080090')"/>
            </xsl:call-template>
          </xsl:with-param>
        </xsl:call-template>
        <xsl:call-template name="fact">
          <xsl:with-param name="label" select="'Institution'"/>
          <xsl:with-param name="text" select="key('top', '00080080')"/>
        </xsl:call-template>
      </dl>
    </div>
  </xsl:template>

  <xsl:template name="seriesCard">
    <div class="card">
      <h2>Series</h2>
      <dl>
        <xsl:call-template name="fact">
          <xsl:with-param name="label" select="'Description'"/>
          <xsl:with-param name="text" select="key('top', '0008103e')"/>
        </xsl:call-template>
        <xsl:call-template name="fact">
          <xsl:with-param name="label" select="'Modality'"/>
          <xsl:with-param name="text" select="key('top', '00080060')"/>
        </xsl:call-template>
        <xsl:call-template name="fact">
          <xsl:with-param name="label" select="'Number'"/>
          <xsl:with-param name="text" select="key('top', '00200011')"/>
        </xsl:call-template>
        <xsl:call-template name="fact">
          <xsl:with-param name="label" select="'Body part'"/>
          <xsl:with-param name="text" select="key('top', '00180015')"/>
        </xsl:call-template>
        <xsl:call-template name="fact">
          <xsl:with-param name="label" select="'Protocol'"/>
          <xsl:with-param name="text" select="key('top', '00181030')"/>
        </xsl:call-template>
        <xsl:call-template name="fact">
          <xsl:with-param name="label" select="'Equipment'"/>
          <xsl:with-param name="text"
                          select="normalize-space(concat(key('top', '00080070'), ' ',
                                                         key('top', '00081090')))"/>
        </xsl:call-template>
      </dl>
    </div>
  </xsl:template>

  <xsl:template name="objectCard">
    <div class="card">
      <h2>Object</h2>
      <dl>
        <xsl:call-template name="fact">
          <xsl:with-param name="label" select="'Number'"/>
          <xsl:with-param name="text" select="key('top', '00200013')"/>
        </xsl:call-template>
        <xsl:call-template name="fact">
          <xsl:with-param name="label" select="'Title'"/>
          <xsl:with-param name="text"
                          select="key('top', '0040a043')/item[1]/tag[@grp = '0008' and
                                                                     @element = '0104']"/>
        </xsl:call-template>
        <xsl:if test="string(key('top', '00280010')) != ''">
          <xsl:call-template name="fact">
            <xsl:with-param name="label" select="'Matrix'"/>
            <xsl:with-param name="text"
                            select="concat(key('top', '00280011'), ' &#215; ',
                                           key('top', '00280010'))"/>
          </xsl:call-template>
        </xsl:if>
        <xsl:call-template name="fact">
          <xsl:with-param name="label" select="'Frames'"/>
          <xsl:with-param name="text" select="key('top', '00280008')"/>
        </xsl:call-template>
        <xsl:call-template name="fact">
          <xsl:with-param name="label" select="'Bits'"/>
          <xsl:with-param name="text" select="key('top', '00280101')"/>
        </xsl:call-template>
        <xsl:call-template name="fact">
          <xsl:with-param name="label" select="'Colour'"/>
          <xsl:with-param name="text" select="key('top', '00280004')"/>
        </xsl:call-template>
        <xsl:call-template name="fact">
          <xsl:with-param name="label" select="'SOP class'"/>
          <xsl:with-param name="text" select="(key('top', '00080016')/@meaning |
                                               key('top', '00080016')[not(@meaning)])[1]"/>
        </xsl:call-template>
        <xsl:call-template name="fact">
          <xsl:with-param name="label" select="'Instance'"/>
          <xsl:with-param name="text" select="key('top', '00080018')"/>
        </xsl:call-template>
        <!-- What the texts were read in, where the header says. -->
        <xsl:if test="/data-set/@charset">
          <xsl:call-template name="fact">
            <xsl:with-param name="label" select="'Character set'"/>
            <xsl:with-param name="text">
              <xsl:value-of select="/data-set/@charset"/>
              <xsl:if test="/data-set/@code-page">
                <xsl:if test="/data-set/@charset = ''">none declared</xsl:if>
                <xsl:if test="/data-set/@charset != ''">
                  <xsl:value-of select="' is not known'"/>
                </xsl:if>
                <xsl:value-of select="concat(', read in code page ', /data-set/@code-page)"/>
              </xsl:if>
            </xsl:with-param>
          </xsl:call-template>
        </xsl:if>
      </dl>
    </div>
  </xsl:template>

  <xsl:template name="fact">
    <xsl:param name="label"/>
    <xsl:param name="text"/>
    <xsl:if test="string($text) != ''">
      <dt><xsl:value-of select="$label"/></dt>
      <dd><xsl:value-of select="$text"/></dd>
    </xsl:if>
  </xsl:template>

  <xsl:template name="inline">
    <xsl:param name="label"/>
    <xsl:param name="text"/>
    <xsl:if test="string($text) != ''">
      <span>
        <b><xsl:value-of select="$label"/></b>
        <xsl:value-of select="concat(' ', $text)"/>
      </span>
      <xsl:value-of select="' '"/>
    </xsl:if>
  </xsl:template>

  <!-- Family name, given and further names; of several scripts the first. -->
  <xsl:template name="personName">
    <xsl:param name="name"/>
    <!-- The name in letters, or the one in ideographs where there is none in letters. -->
    <xsl:variable name="first"
                  select="substring-before(concat(substring($name, 1 + starts-with($name, '=')), '='),
                                           '=')"/>
    <xsl:variable name="rest"
                  select="normalize-space(translate(substring-after($first, '^'), '^', ' '))"/>
    <xsl:value-of select="normalize-space(substring-before(concat($first, '^'), '^'))"/>
    <xsl:if test="$rest != ''">
      <xsl:value-of select="concat(', ', $rest)"/>
    </xsl:if>
  </xsl:template>

  <!-- 20040119 as 2004-01-19; anything else as it is. -->
  <xsl:template name="date">
    <xsl:param name="date"/>
    <xsl:choose>
      <xsl:when test="translate($date, '0123456789', '') = '' and string-length($date) = 8">
        <xsl:value-of select="concat(substring($date, 1, 4), '-', substring($date, 5, 2), '-',
                                     substring($date, 7))"/>
      </xsl:when>
      <xsl:otherwise>
        <xsl:value-of select="$date"/>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- Hours and minutes. -->
  <xsl:template name="time">
    <xsl:param name="time"/>
    <xsl:variable name="minutes" select="substring($time, 1, 4)"/>
    <xsl:if test="string-length($minutes) = 4 and translate($minutes, '0123456789', '') = ''">
      <xsl:value-of select="concat(' ', substring($minutes, 1, 2), ':', substring($minutes, 3))"/>
    </xsl:if>
  </xsl:template>

  <!-- 059Y as 59 years. -->
  <xsl:template name="age">
    <xsl:variable name="age" select="string(key('top', '00101010'))"/>
    <xsl:variable name="number" select="number(substring($age, 1, 3))"/>
    <xsl:variable name="unit" select="substring($age, 4)"/>
    <xsl:choose>
      <xsl:when test="string-length($unit) = 1 and contains('YMWD', $unit) and $number >= 0">
        <xsl:value-of select="concat($number, ' ')"/>
        <xsl:choose>
          <xsl:when test="$unit = 'Y'">year</xsl:when>
          <xsl:when test="$unit = 'M'">month</xsl:when>
          <xsl:when test="$unit = 'W'">week</xsl:when>
          <xsl:otherwise>day</xsl:otherwise>
        </xsl:choose>
        <xsl:if test="$number != 1">s</xsl:if>
      </xsl:when>
      <xsl:otherwise>
        <xsl:value-of select="$age"/>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template name="sex">
    <xsl:variable name="sex" select="string(key('top', '00100040'))"/>
    <xsl:choose>
      <xsl:when test="$sex = 'M'">male</xsl:when>
      <xsl:when test="$sex = 'F'">female</xsl:when>
      <xsl:when test="$sex = 'O'">other</xsl:when>
      <xsl:otherwise><xsl:value-of select="$sex"/></xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- ==== The elements ==== -->

  <xsl:template name="contents">
    <nav aria-label="Groups of elements">
      <xsl:for-each select="$firstOfGroups">
        <a href="#g{@grp}"><xsl:call-template name="groupName"/></a>
        <xsl:value-of select="' '"/>
      </xsl:for-each>
    </nav>
  </xsl:template>

  <xsl:template name="groupName">
    <xsl:param name="grp" select="string(@grp)"/>
    <xsl:choose>
      <xsl:when test="$grp = '0002'">File</xsl:when>
      <xsl:when test="$grp = '0004'">Directory</xsl:when>
      <xsl:when test="$grp = '0008'">Identification</xsl:when>
      <xsl:when test="$grp = '0010'">Patient</xsl:when>
      <xsl:when test="$grp = '0012'">Clinical trial</xsl:when>
      <xsl:when test="$grp = '0018'">Acquisition</xsl:when>
      <xsl:when test="$grp = '0020'">Relationship</xsl:when>
      <xsl:when test="$grp = '0028'">Image</xsl:when>
      <xsl:when test="$grp = '0032'">Study</xsl:when>
      <xsl:when test="$grp = '0038'">Visit</xsl:when>
      <xsl:when test="$grp = '0040'">Procedure and content</xsl:when>
      <xsl:when test="$grp = '0054'">Nuclear medicine</xsl:when>
      <xsl:when test="$grp = '0070'">Presentation</xsl:when>
      <xsl:when test="$grp = '0088'">Storage</xsl:when>
      <xsl:when test="$grp = '3002'">RT image</xsl:when>
      <xsl:when test="$grp = '3004'">RT dose</xsl:when>
      <xsl:when test="$grp = '3006'">RT structure set</xsl:when>
      <xsl:when test="$grp = '300a'">RT plan</xsl:when>
      <xsl:when test="$grp = '300c'">RT references</xsl:when>
      <xsl:when test="$grp = '300e'">RT approval</xsl:when>
      <xsl:when test="$grp = '5400'">Waveform</xsl:when>
      <xsl:when test="starts-with($grp, '50')">Curve</xsl:when>
      <xsl:when test="starts-with($grp, '60')">Overlay</xsl:when>
      <xsl:when test="$grp = '7fe0'">Pixel data</xsl:when>
      <xsl:when test="contains('13579bdf', substring($grp, 4))">
        <xsl:value-of select="concat('Private ', $grp)"/>
      </xsl:when>
      <xsl:otherwise><xsl:value-of select="concat('Group ', $grp)"/></xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template name="table">
    <xsl:param name="tags"/>
    <table>
      <thead>
        <tr>
          <th scope="col">Tag</th>
          <th scope="col">Name</th>
          <th scope="col">VR</th>
          <th scope="col">Value</th>
        </tr>
      </thead>
      <tbody>
        <xsl:apply-templates select="$tags"/>
      </tbody>
    </table>
  </xsl:template>

  <xsl:template match="tag">
    <tr>
      <td class="tag"><xsl:value-of select="concat('(', @grp, ',', @element, ')')"/></td>
      <td class="name"><xsl:call-template name="words"/></td>
      <td class="vr"><xsl:value-of select="@VR"/></td>
      <td class="value">
        <xsl:choose>
          <xsl:when test="values">
            <xsl:apply-templates select="values"/>
          </xsl:when>
          <xsl:otherwise>
            <xsl:value-of select="."/>
          </xsl:otherwise>
        </xsl:choose>
        <xsl:if test="@meaning">
          <xsl:value-of select="' '"/>
          <span class="meaning"><xsl:value-of select="@meaning"/></span>
        </xsl:if>
      </td>
    </tr>
  </xsl:template>

  <!-- The whole width, so that deep ones keep room for their values. -->
  <xsl:template match="tag[@VR = 'SQ']">
    <tr>
      <xsl:choose>
        <xsl:when test="item">
          <td class="sequence" colspan="4">
            <details open="open">
              <summary>
                <span class="tag">
                  <xsl:value-of select="concat('(', @grp, ',', @element, ')')"/>
                </span>
                <xsl:value-of select="' '"/>
                <xsl:call-template name="words"/>
                <xsl:value-of select="' '"/>
                <span class="vr">
                  <xsl:value-of select="concat('SQ, ', count(item), ' item')"/>
                  <xsl:if test="count(item) != 1">s</xsl:if>
                </span>
              </summary>
              <xsl:for-each select="item">
                <div class="item">
                  <h3><xsl:value-of select="concat('Item ', position())"/></h3>
                  <table>
                    <tbody>
                      <xsl:apply-templates select="tag"/>
                    </tbody>
                  </table>
                </div>
              </xsl:for-each>
            </details>
          </td>
        </xsl:when>
        <xsl:otherwise>
          <td class="tag"><xsl:value-of select="concat('(', @grp, ',', @element, ')')"/></td>
          <td class="name"><xsl:call-template name="words"/></td>
          <td class="vr">SQ</td>
          <td class="value none">no items</td>
        </xsl:otherwise>
      </xsl:choose>
    </tr>
  </xsl:template>

  <xsl:template match="values">
    <xsl:for-each select="value">
      <xsl:if test="position() != 1"><i>\</i><wbr/></xsl:if>
      <xsl:value-of select="."/>
    </xsl:for-each>
    <xsl:if test="@count != @total">
      <xsl:value-of select="' '"/>
      <span class="none">
        <xsl:value-of select="concat('the first ', @count, ' of ', @total, ' values')"/>
      </span>
    </xsl:if>
  </xsl:template>

  <!-- The standard's name, or where the header lacks it the name in words: sopInstanceUid as SOP
       Instance UID. -->
  <xsl:template name="words">
    <xsl:choose>
      <xsl:when test="@title">
        <xsl:value-of select="@title"/>
      </xsl:when>
      <!-- What the dictionary does not know is named by its element number. -->
      <xsl:when test="@name = @element">
        <span class="none">
          <xsl:choose>
            <xsl:when test="contains('13579bdf', substring(@grp, 4))">private</xsl:when>
            <xsl:otherwise>unknown</xsl:otherwise>
          </xsl:choose>
        </span>
      </xsl:when>
      <xsl:when test="starts-with(@name, 'sop')">
        <xsl:value-of select="'SOP'"/>
        <xsl:call-template name="moreWords">
          <xsl:with-param name="rest" select="substring(@name, 4)"/>
        </xsl:call-template>
      </xsl:when>
      <xsl:otherwise>
        <xsl:value-of select="translate(substring(@name, 1, 1), $lower, $upper)"/>
        <xsl:call-template name="moreWords">
          <xsl:with-param name="rest" select="substring(@name, 2)"/>
        </xsl:call-template>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- A space before each capital letter; of known short forms all letters are capital. -->
  <xsl:template name="moreWords">
    <xsl:param name="rest"/>
    <!-- Everything up to the first capital letter. -->
    <xsl:variable name="marked" select="translate($rest, $upper, '^^^^^^^^^^^^^^^^^^^^^^^^^^')"/>
    <xsl:variable name="head" select="substring-before(concat($marked, '^'), '^')"/>
    <xsl:value-of select="$head"/>
    <xsl:variable name="next" select="substring($rest, string-length($head) + 1)"/>
    <xsl:choose>
      <xsl:when test="$next = ''"/>
      <xsl:when test="$next = 'Uid' or $next = 'Id'">
        <xsl:value-of select="concat(' ', translate($next, $lower, $upper))"/>
      </xsl:when>
      <xsl:when test="starts-with($next, 'Sop')">
        <xsl:value-of select="' SOP'"/>
        <xsl:call-template name="moreWords">
          <xsl:with-param name="rest" select="substring($next, 4)"/>
        </xsl:call-template>
      </xsl:when>
      <xsl:otherwise>
        <xsl:value-of select="concat(' ', substring($next, 1, 1))"/>
        <xsl:call-template name="moreWords">
          <xsl:with-param name="rest" select="substring($next, 2)"/>
        </xsl:call-template>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template name="styles">
    <xsl:text>
:root { --ink: #1b2430; --soft: #5d6b7c; --line: #d9dfe6; --accent: #1f5f8b; --tint: #f3f6f9; }
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 75rem; padding: 1.5rem; background: #fff; color: var(--ink);
  font: 15px/1.45 system-ui, "Segoe UI", "Helvetica Neue", Arial, sans-serif; }
header { border-top: 4px solid var(--accent); background: var(--tint); padding: 1rem 1.25rem 1.25rem; }
h1 { margin: 0; font-size: 1.7rem; overflow-wrap: anywhere; }
.patient { margin: .25rem 0 1rem; }
.patient span { margin-right: 1.25rem; overflow-wrap: anywhere; }
.above { margin: 0 0 .75rem; line-height: 1.45; }
nav.above a { border: 0; padding: 0; text-decoration: underline; font-size: 1rem; }
.patient b, dt { color: var(--soft); font-weight: 600; }
.cards { display: grid; grid-template-columns: repeat(auto-fit, minmax(17rem, 1fr)); gap: 1rem; }
.card { background: #fff; border: 1px solid var(--line); border-radius: 4px; padding: .75rem 1rem; }
.card h2 { margin: 0 0 .4rem; border: 0; padding: 0; font-size: 1rem; color: var(--accent); }
dl { display: grid; grid-template-columns: max-content 1fr; gap: .15rem .9rem; margin: 0; }
dd { margin: 0; overflow-wrap: anywhere; }
nav { margin: 1rem 0; line-height: 2; }
nav a { display: inline-block; border: 1px solid var(--line); border-radius: 1rem; padding: 0 .7rem;
  color: var(--accent); text-decoration: none; font-size: .9rem; }
nav a:hover { background: var(--tint); }
h2 { margin: 1.75rem 0 .4rem; border-bottom: 2px solid var(--accent); padding-bottom: .2rem;
  font-size: 1.15rem; }
h2 .grp { color: var(--soft); font-weight: 400; font-size: .85rem; }
table { width: 100%; border-collapse: collapse; }
th { text-align: left; color: var(--soft); font-size: .8rem; font-weight: 600; }
th, td { padding: .22rem .6rem .22rem 0; vertical-align: top; border-bottom: 1px solid var(--line); }
.tag, .value { font-family: ui-monospace, "Cascadia Mono", Consolas, "DejaVu Sans Mono", monospace;
  font-size: .86rem; }
.tag { width: 7.5rem; white-space: nowrap; color: var(--soft); }
.name { width: 19rem; }
.item .tag { width: 7rem; }
.item .name { width: 36%; }
.vr { width: 3rem; color: var(--soft); font-size: .86rem; }
.value { white-space: pre-wrap; overflow-wrap: anywhere; }
.value i { color: var(--soft); font-style: normal; padding: 0 .1rem; }
.none { color: var(--soft); font-style: italic; }
.meaning { color: var(--soft); font-family: system-ui, "Segoe UI", "Helvetica Neue", Arial, sans-serif; }
.sequence { padding-right: 0; }
summary { cursor: pointer; list-style-position: outside; margin-left: 1rem; }
summary .tag { margin-right: .4rem; }
summary:hover { background: var(--tint); }
.item { margin: .4rem 0 .6rem .25rem; border-left: 3px solid var(--line); padding-left: .9rem; }
.item h3 { margin: 0; font-size: .8rem; color: var(--accent); }
.item tr:last-child > td { border-bottom: 0; }
tbody > tr:hover > td { background: var(--tint); }
@media (max-width: 640px) {
  body { padding: .75rem; }
  header { padding: .75rem; }
  .cards { grid-template-columns: 1fr; }
  table { font-size: .85rem; }
  th, td { padding-right: .4rem; }
  .name { overflow-wrap: anywhere; }
  .tag, .item .tag { width: 4.9rem; font-size: .7rem; }
  .name, .item .name { width: 34%; }
  .vr { width: 1.6rem; font-size: .75rem; }
  .value { font-size: .8rem; }
  .item { padding-left: .4rem; }
}
@media print {
  .above { display: none; }
  @page { margin: 14mm; }
  body { max-width: none; padding: 0; font-size: 9pt; }
  nav { display: none; }
  header, .card { background: none; }
  header { padding: .5rem 0; }
  .cards { grid-template-columns: repeat(3, 1fr); }
  h2, h3, summary { break-after: avoid; }
  tr, .card { break-inside: avoid; }
  tr:has(details) { break-inside: auto; }
  thead { display: table-header-group; }
}
</xsl:text>
  </xsl:template>
</xsl:stylesheet>
