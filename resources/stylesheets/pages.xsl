<?xml version="1.0" encoding="UTF-8"?>
<!-- The pages of a medium: the page of the set (INDEX.HTM) and one page for each study, of the XML that
     docs/pages.md describes. They are XHTML Basic: no script, nothing from elsewhere, no element that
     an old browser does not know. Elements without content are left out, as browsers that read a page
     as HTML take their ends for missing.

     All white space that is written stands in select attributes: some XML libraries drop text nodes
     of white space alone when they load a stylesheet. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
                xmlns="http://www.w3.org/1999/xhtml">
  <xsl:output method="xml" encoding="UTF-8" indent="no" omit-xml-declaration="yes"
              doctype-public="-//W3C//DTD XHTML Basic 1.1//EN"
              doctype-system="http://www.w3.org/TR/xhtml-basic/xhtml-basic11.dtd"/>

  <xsl:template match="/medium">
    <html xml:lang="en" lang="en">
      <head>
        <meta http-equiv="Content-Type" content="text/html; charset=UTF-8"/>
        <title><xsl:call-template name="title"/></title>
        <meta name="viewport" content="width=device-width, initial-scale=1"/>
        <meta name="generator" content="{@software}"/>
        <link rel="stylesheet" type="text/css" href="{@style}"/>
      </head>
      <body>
        <xsl:choose>
          <xsl:when test="@page = 'study'">
            <xsl:apply-templates select="patient/study" mode="page"/>
          </xsl:when>
          <xsl:otherwise>
            <xsl:call-template name="index"/>
          </xsl:otherwise>
        </xsl:choose>
        <div class="foot">
          <p>
            <xsl:value-of select="concat('Made by ', @software)"/>
            <xsl:if test="@created">
              <xsl:value-of select="' on '"/>
              <xsl:call-template name="date">
                <xsl:with-param name="date" select="@created"/>
              </xsl:call-template>
            </xsl:if>
            <xsl:value-of select="'.'"/>
          </p>
        </div>
      </body>
    </html>
  </xsl:template>

  <xsl:template name="title">
    <xsl:choose>
      <xsl:when test="@page = 'study'">
        <xsl:apply-templates select="patient/name" mode="first"/>
        <xsl:value-of select="' &#8211; '"/>
        <xsl:apply-templates select="patient/study" mode="description"/>
      </xsl:when>
      <xsl:otherwise>
        <xsl:value-of select="'Medical images'"/>
        <xsl:if test="institution/@name">
          <xsl:value-of select="concat(' &#8211; ', institution/@name)"/>
        </xsl:if>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- ==== The page of the set ==== -->

  <xsl:template name="index">
    <div class="head">
      <h1>Medical images</h1>
      <xsl:apply-templates select="institution"/>
      <p>
        <xsl:call-template name="total">
          <xsl:with-param name="number" select="@patients"/>
          <xsl:with-param name="one" select="'patient'"/>
          <xsl:with-param name="several" select="'patients'"/>
        </xsl:call-template>
        <xsl:value-of select="', '"/>
        <xsl:call-template name="total">
          <xsl:with-param name="number" select="@studies"/>
          <xsl:with-param name="one" select="'study'"/>
          <xsl:with-param name="several" select="'studies'"/>
        </xsl:call-template>
        <xsl:value-of select="', '"/>
        <xsl:call-template name="contents"/>
      </p>
      <xsl:if test="@discs">
        <p><xsl:value-of select="concat('Disc ', @disc, ' of ', @discs)"/></p>
      </xsl:if>
    </div>
    <h2>Patients and studies</h2>
    <xsl:apply-templates select="patient"/>
    <xsl:if test="not(patient)">
      <p>No object on this medium belongs to a patient.</p>
    </xsl:if>
    <h2>How to view the images</h2>
    <ul>
      <li>These pages tell what is on the medium. To see the images, open or import the file
        <strong>DICOMDIR</strong> in the root of the medium with a program for DICOM images.</li>
      <li>
        <xsl:value-of select="'All objects are standard DICOM files that can be imported.'"/>
        <xsl:if test="@objects-in">
          <xsl:value-of select="' They lie in the directory '"/>
          <strong><xsl:value-of select="@objects-in"/></strong>
          <xsl:value-of select="'.'"/>
        </xsl:if>
      </li>
      <li><a href="{@readme}">README.TXT</a> says the same as plain text.</li>
      <xsl:if test="@other-content">
        <li>The directory <a href="{@other-content}"><xsl:value-of select="@other-content-name"/></a>
          holds what the institution added, such as a program that shows images. Nothing of it starts
          by itself.</li>
      </xsl:if>
    </ul>
    <h2>Please note</h2>
    <xsl:choose>
      <xsl:when test="institution/@disclaimer">
        <p class="text"><xsl:value-of select="institution/@disclaimer"/></p>
      </xsl:when>
      <xsl:otherwise>
        <p>This medium holds confidential medical data. Whoever finds it is asked to return it. Its pages
          give an overview; they are no means of diagnosis.</p>
      </xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template match="institution">
    <xsl:if test="@name">
      <p class="institution text"><xsl:value-of select="@name"/></p>
    </xsl:if>
    <xsl:if test="@address">
      <p class="text"><xsl:value-of select="@address"/></p>
    </xsl:if>
    <xsl:if test="@phone or @web">
      <p class="text">
        <xsl:if test="@phone"><xsl:value-of select="concat('Telephone ', @phone)"/></xsl:if>
        <xsl:if test="@phone and @web"><xsl:value-of select="', '"/></xsl:if>
        <xsl:value-of select="@web"/>
      </p>
    </xsl:if>
  </xsl:template>

  <xsl:template match="patient">
    <h3 class="text"><xsl:apply-templates select="name"/></h3>
    <xsl:call-template name="person"/>
    <table>
      <tr>
        <th scope="col" class="date">Date</th>
        <th scope="col">Study</th>
        <th scope="col" class="type">Type</th>
        <th scope="col" class="count">Series</th>
        <th scope="col" class="count">Objects</th>
      </tr>
      <xsl:for-each select="study">
        <tr>
          <td class="date">
            <xsl:call-template name="dateOrDash"/>
          </td>
          <th scope="row" class="text">
            <a href="{@href}"><xsl:apply-templates select="." mode="description"/></a>
          </th>
          <td>
            <xsl:call-template name="orDash">
              <xsl:with-param name="text" select="@modalities"/>
            </xsl:call-template>
          </td>
          <td class="count"><xsl:value-of select="@series"/></td>
          <td class="count"><xsl:value-of select="@objects"/></td>
        </tr>
      </xsl:for-each>
    </table>
  </xsl:template>

  <!-- ==== The page of a study ==== -->

  <xsl:template match="study" mode="page">
    <p class="path"><a href="{/medium/@index}">All patients and studies</a></p>
    <div class="head">
      <h1 class="text"><xsl:apply-templates select="." mode="description"/></h1>
      <p class="institution text"><xsl:apply-templates select="../name"/></p>
      <xsl:for-each select="..">
        <xsl:call-template name="person"/>
      </xsl:for-each>
    </div>
    <h2>Study</h2>
    <dl>
      <dt>Date</dt>
      <dd>
        <xsl:call-template name="dateOrDash"/>
        <xsl:call-template name="time">
          <xsl:with-param name="time" select="@time"/>
        </xsl:call-template>
      </dd>
      <xsl:if test="@accession">
        <dt>Accession number</dt>
        <dd class="text"><xsl:value-of select="@accession"/></dd>
      </xsl:if>
      <xsl:if test="@id">
        <dt>Study ID</dt>
        <dd class="text"><xsl:value-of select="@id"/></dd>
      </xsl:if>
      <dt>Contents</dt>
      <dd><xsl:call-template name="contents"/></dd>
    </dl>
    <h2>Series</h2>
    <table>
      <tr>
        <th scope="col" class="number">No.</th>
        <th scope="col">Series</th>
        <th scope="col" class="type">Type</th>
        <th scope="col" class="date">Date</th>
        <th scope="col" class="count">Objects</th>
      </tr>
      <xsl:apply-templates select="series"/>
    </table>
    <p>The name of a series leads to the header of its first object: what the device wrote down about
      patient, examination and image.</p>
  </xsl:template>

  <xsl:template match="series">
    <tr>
      <td class="number">
        <xsl:call-template name="orDash">
          <xsl:with-param name="text" select="@number"/>
        </xsl:call-template>
      </td>
      <th scope="row" class="text">
        <xsl:choose>
          <xsl:when test="@header">
            <a href="{@header}"><xsl:call-template name="seriesName"/></a>
          </xsl:when>
          <xsl:otherwise><xsl:call-template name="seriesName"/></xsl:otherwise>
        </xsl:choose>
        <xsl:if test="object">
          <span class="files">
            <xsl:value-of select="object[1]/@file"/>
            <xsl:if test="object[2]">
              <xsl:value-of select="concat(' to ', object[last()]/@file)"/>
            </xsl:if>
          </span>
        </xsl:if>
      </th>
      <td>
        <xsl:call-template name="orDash">
          <xsl:with-param name="text" select="@modality"/>
        </xsl:call-template>
      </td>
      <td class="date"><xsl:call-template name="dateOrDash"/></td>
      <td class="count"><xsl:value-of select="@objects"/></td>
    </tr>
  </xsl:template>

  <xsl:template name="seriesName">
    <xsl:choose>
      <xsl:when test="@description"><xsl:value-of select="@description"/></xsl:when>
      <xsl:when test="@number"><xsl:value-of select="concat('Series ', @number)"/></xsl:when>
      <xsl:otherwise>Series without a name</xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- ==== Parts of both ==== -->

  <xsl:template match="study" mode="description">
    <xsl:choose>
      <xsl:when test="@description"><xsl:value-of select="@description"/></xsl:when>
      <xsl:otherwise>Study without a name</xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <!-- The name in letters first, those in other scripts behind it. -->
  <xsl:template match="name">
    <xsl:apply-templates select="." mode="first"/>
    <xsl:for-each select="group[position() &gt; 1]">
      <xsl:value-of select="' '"/>
      <span class="other"><xsl:value-of select="."/></span>
    </xsl:for-each>
  </xsl:template>

  <xsl:template match="name" mode="first">
    <xsl:choose>
      <xsl:when test="group"><xsl:value-of select="group[1]"/></xsl:when>
      <xsl:otherwise>No patient name</xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template name="person">
    <xsl:if test="@id or @birth-date or @sex">
      <p class="person">
        <xsl:if test="@id">
          <span><b>ID</b><xsl:value-of select="' '"/><span class="value"><xsl:value-of select="@id"/></span></span>
          <xsl:value-of select="' '"/>
        </xsl:if>
        <xsl:if test="@birth-date">
          <span><b>Born</b><xsl:value-of select="' '"/>
            <xsl:call-template name="date">
              <xsl:with-param name="date" select="@birth-date"/>
            </xsl:call-template>
          </span>
          <xsl:value-of select="' '"/>
        </xsl:if>
        <xsl:if test="@sex">
          <span><b>Sex</b><xsl:value-of select="' '"/>
            <xsl:choose>
              <xsl:when test="@sex = 'M'">male</xsl:when>
              <xsl:when test="@sex = 'F'">female</xsl:when>
              <xsl:when test="@sex = 'O'">other</xsl:when>
              <xsl:otherwise><xsl:value-of select="@sex"/></xsl:otherwise>
            </xsl:choose>
          </span>
        </xsl:if>
      </p>
    </xsl:if>
  </xsl:template>

  <!-- Of the medium or the study. -->
  <xsl:template name="contents">
    <xsl:call-template name="total">
      <xsl:with-param name="number" select="@series"/>
      <xsl:with-param name="one" select="'series'"/>
      <xsl:with-param name="several" select="'series'"/>
    </xsl:call-template>
    <xsl:value-of select="', '"/>
    <xsl:call-template name="total">
      <xsl:with-param name="number" select="@objects"/>
      <xsl:with-param name="one" select="'object'"/>
      <xsl:with-param name="several" select="'objects'"/>
    </xsl:call-template>
  </xsl:template>

  <xsl:template name="total">
    <xsl:param name="number"/>
    <xsl:param name="one"/>
    <xsl:param name="several"/>
    <xsl:value-of select="concat($number, ' ')"/>
    <xsl:choose>
      <xsl:when test="$number = 1"><xsl:value-of select="$one"/></xsl:when>
      <xsl:otherwise><xsl:value-of select="$several"/></xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template name="orDash">
    <xsl:param name="text"/>
    <xsl:choose>
      <xsl:when test="string($text) != ''"><xsl:value-of select="$text"/></xsl:when>
      <xsl:otherwise>&#8211;</xsl:otherwise>
    </xsl:choose>
  </xsl:template>

  <xsl:template name="dateOrDash">
    <xsl:call-template name="orDash">
      <xsl:with-param name="text">
        <xsl:call-template name="date">
          <xsl:with-param name="date" select="@date"/>
        </xsl:call-template>
      </xsl:with-param>
    </xsl:call-template>
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
</xsl:stylesheet>
